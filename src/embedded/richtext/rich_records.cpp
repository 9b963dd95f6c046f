#include "embedded/richtext/rich_records.h"

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens::richrecord {
namespace {

constexpr quint16 kFileHotspot = 4;

enum class Width { Byte, Word, Double };

Width widthOf(QByteArrayView record) {
  switch (quint8(record[1])) {
    case 0xFF:
      return Width::Word;
    case 0x00:
      return Width::Double;
    default:
      return Width::Byte;
  }
}

qsizetype headerSize(Width width) {
  switch (width) {
    case Width::Word:
      return 4;
    case Width::Double:
      return 6;
    default:
      return 2;
  }
}

// Line ends of every origin become "\n": the stored NUL, and CR, LF or both from imported text.
QString withOneKindOfBreak(QString text) {
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return withLineFeeds(std::move(text));
}

QByteArray toStoredText(QStringView lines) {
  QByteArray bytes = toLmbcs(lines);
  bytes.replace('\n', '\0');
  return bytes;
}

QByteArray fontBytes(const RichFont& font) {
  QByteArray bytes;
  for (const quint8 part : {font.face, font.attributes, font.color, font.points}) bytes.append(char(part));
  return bytes;
}

// The text up to the NUL; the view then begins behind it.
QString takeTerminated(QByteArrayView& bytes) {
  const qsizetype end = bytes.indexOf('\0');
  const qsizetype length = end < 0 ? bytes.size() : end;
  const QString text = fromLmbcs(bytes.first(length));
  bytes = bytes.sliced(end < 0 ? length : length + 1);
  return text;
}

void readText(QByteArrayView data, RichElement& element) {
  if (data.size() < kFontSize) return;
  element.font = {quint8(data[0]), quint8(data[1]), quint8(data[2]), quint8(data[3])};
  const QByteArrayView text = data.sliced(kFontSize);
  const bool onlyBreak = text.size() == 1 && text[0] == '\0';
  element.kind = onlyBreak ? RichElement::Kind::Break : RichElement::Kind::Text;
  if (!onlyBreak) element.text = withOneKindOfBreak(fromLmbcs(text));
}

void readHotspot(QByteArrayView data, RichElement& element) {
  ByteReader reader(data);
  if (reader.u16() != kFileHotspot) return;
  reader.skip(4);
  const quint16 length = reader.u16();
  if (reader.failed()) return;
  QByteArrayView names = reader.take(length);
  element.kind = RichElement::Kind::Attachment;
  element.text = takeTerminated(names);
  element.caption = takeTerminated(names);
}

void readLink(QByteArrayView data, qsizetype target, RichElement& element) {
  if (data.size() < target) return;
  QByteArrayView texts = data.sliced(target);
  element.kind = RichElement::Kind::Link;
  element.caption = takeTerminated(texts);
}

void readCell(QByteArrayView data, RichElement& element) {
  if (data.size() < 2) return;
  element.kind = RichElement::Kind::TableCell;
  element.row = quint8(data[0]);
  element.column = quint8(data[1]);
}

void readByteRecord(quint8 kind, QByteArrayView data, RichElement& element) {
  switch (kind) {
    case Paragraph:
      element.kind = RichElement::Kind::Paragraph;
      return;
    case TableBegin:
    case NestedTableBegin:
      element.kind = RichElement::Kind::TableBegin;
      return;
    case TableCell:
    case NestedTableCell:
      readCell(data, element);
      return;
    case TableEnd:
    case NestedTableEnd:
      element.kind = RichElement::Kind::TableEnd;
      return;
  }
}

void readWordRecord(quint8 kind, QByteArrayView data, RichElement& element) {
  constexpr quint8 kHotspotBeginV4 = 173, kHotspotBeginV5 = 126;
  switch (kind) {
    case Text:
      readText(data, element);
      return;
    case IndexedLink:
      readLink(data, 2, element);
      return;
    case Link:
      readLink(data, 40, element);
      return;
    case HotspotBegin:
    case kHotspotBeginV4:
    case kHotspotBeginV5:
      readHotspot(data, element);
      return;
  }
}

[[noreturn]] void tooLong(quint8 kind, qsizetype length) {
  throw RuntimeError(err::Overflow,
                     u"A rich text record of kind %1 cannot hold %2 bytes."_s.arg(kind).arg(length));
}

}  // namespace

qsizetype wholeLength(QByteArrayView bytes) {
  if (bytes.size() < 2) return 0;
  const Width width = widthOf(bytes);
  const qsizetype header = headerSize(width);
  if (bytes.size() < header) return 0;
  ByteReader reader(bytes.sliced(2));
  qsizetype length = quint8(bytes[1]);
  if (width == Width::Word) length = reader.u16();
  if (width == Width::Double) length = reader.u32();
  return length < header || length > bytes.size() ? 0 : length;
}

quint16 typeWord(QByteArrayView record) {
  return widthOf(record) == Width::Word ? quint16(quint8(record[0]) | 0xFF00) : quint8(record[0]);
}

bool isTypeOf(uint word, QByteArrayView record) {
  if (record.size() < 2 || word > 0xFFFF || (word & 0xFF) != quint8(record[0])) return false;
  const uint upper = word >> 8;
  return upper == 0 || upper == quint8(record[1]);
}

QByteArrayView textData(QByteArrayView record) {
  return record.sliced(headerSize(Width::Word));
}

RichElement read(QByteArrayView record) {
  RichElement element;
  element.record = record.toByteArray();
  const Width width = widthOf(record);
  const QByteArrayView data = record.sliced(headerSize(width));
  if (width == Width::Byte) readByteRecord(quint8(record[0]), data, element);
  if (width == Width::Word) readWordRecord(quint8(record[0]), data, element);
  return element;
}

QByteArray byteRecord(quint8 kind, QByteArrayView data) {
  const qsizetype length = data.size() + 2;
  if (length > 0xFE) tooLong(kind, data.size());
  QByteArray record;
  record.append(char(kind));
  record.append(char(length));
  return record.append(data);
}

QByteArray wordRecord(quint8 kind, QByteArrayView data) {
  const qsizetype length = data.size() + 4;
  if (length > 0xFFFF) tooLong(kind, data.size());
  QByteArray record;
  record.reserve(length);
  record.append(char(kind));
  record.append('\xFF');
  appendU16(record, quint16(length));
  return record.append(data);
}

QVector<QByteArray> textRecords(const QString& text, const RichFont& font) {
  // Characters are encoded in slices, since one takes up to three bytes per UTF-16 unit.
  constexpr qsizetype kSlice = 4096;
  const QString lines = withOneKindOfBreak(text);
  QVector<QByteArray> records;
  QByteArray data = fontBytes(font);
  for (qsizetype at = 0; at < lines.size();) {
    qsizetype count = qMin(kSlice, lines.size() - at);
    if (at + count < lines.size() && lines[at + count - 1].isHighSurrogate()) ++count;
    const QByteArray encoded = toStoredText(QStringView(lines).sliced(at, count));
    if (data.size() + encoded.size() > kLongestData) {
      records.push_back(wordRecord(Text, data));
      data = fontBytes(font);
    }
    data.append(encoded);
    at += count;
  }
  if (!lines.isEmpty()) records.push_back(wordRecord(Text, data));
  return records;
}

}  // namespace lens::richrecord
