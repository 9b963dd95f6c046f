#include "embedded/richtext/rich_text.h"

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/unid.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

using Kind = RichElement::Kind;

[[noreturn]] void refuse(const QString& reason) {
  throw RuntimeError(err::InvalidCall, reason);
}

// A replica ID or half of a UNID: printed with its high end first, stored with its low end first.
void appendId(QByteArray& bytes, QStringView digits) {
  quint64 id = 0;
  if (!parseHexId(digits, id)) refuse(u"\"%1\" is no ID of 16 hexadecimal digits."_s.arg(digits));
  appendU32(bytes, quint32(id));
  appendU32(bytes, quint32(id >> 32));
}

void appendUnid(QByteArray& bytes, const QString& unid) {
  if (unid.isEmpty()) {
    bytes.append(16, '\0');
    return;
  }
  if (unid.size() != 32) refuse(u"\"%1\" is no ID of 32 hexadecimal digits."_s.arg(unid));
  appendId(bytes, QStringView(unid).first(16));
  appendId(bytes, QStringView(unid).sliced(16));
}

// Where a line that is too long ends, and where the next one begins.
struct Cut {
  qsizetype end, next;
};

Cut cutOf(QStringView line, qsizetype limit) {
  for (qsizetype at = limit; at > 0; --at) {
    if (line[at] == u' ' || line[at] == u'\t') return {at, at + 1};
  }
  qsizetype end = limit;
  if (line[end - 1].isHighSurrogate() && line[end].isLowSurrogate()) end += end > 1 ? -1 : 1;
  return {end, end};
}

}  // namespace

RichText RichText::fromBytes(QByteArrayView data) {
  RichText text;
  for (qsizetype at = 0; at < data.size();) {
    const qsizetype length = richrecord::wholeLength(data.sliced(at));
    if (length == 0) {
      text.complete_ = false;
      text.unread_ = data.sliced(at).toByteArray();
      break;
    }
    RichElement element = richrecord::read(data.sliced(at, length));
    at += length;
    if (length % 2 != 0) {
      text.endsUnpadded_ = at == data.size();
      if (!text.endsUnpadded_) element.pad = data[at++];
    }
    text.add(std::move(element));
  }
  return text;
}

QByteArray RichText::toBytes() const {
  QByteArray bytes;
  for (const RichElement& element : elements_) {
    bytes.append(element.record);
    if (element.record.size() % 2 != 0) bytes.append(element.pad);
  }
  if (endsUnpadded_) bytes.chop(1);
  return bytes.append(unread_);
}

void RichText::add(RichElement element) {
  if (element.kind == Kind::TableBegin) ++openTables_;
  if (element.kind == Kind::TableEnd && openTables_ > 0) --openTables_;
  elements_.push_back(std::move(element));
}

void RichText::append(const QByteArray& record) {
  add(richrecord::read(record));
  endsUnpadded_ = false;
}

void RichText::needParagraph() {
  for (auto it = elements_.crbegin(); it != elements_.crend(); ++it) {
    switch (it->kind) {
      case Kind::Raw:
        continue;
      case Kind::TableBegin:
      case Kind::TableCell:
      case Kind::TableEnd:
        beginParagraph();
        return;
      default:
        return;
    }
  }
  beginParagraph();
}

void RichText::beginParagraph() {
  append(richrecord::byteRecord(richrecord::Paragraph));
}

void RichText::appendText(const QString& text, const RichFont& font) {
  if (text.isEmpty()) return;
  needParagraph();
  for (const QByteArray& record : richrecord::textRecords(text, font)) append(record);
}

void RichText::appendBreak() {
  appendText(u"\n"_s);
}

void RichText::appendAttachment(const QString& internalName, const QString& caption) {
  constexpr quint16 kFileHotspot = 4;
  QByteArray names;
  for (const QString& name : {internalName, caption}) {
    names.append(toLmbcs(name));
    names.append('\0');
  }
  QByteArray data;
  appendU16(data, kFileHotspot);
  appendU32(data, 0);
  appendU16(data, quint16(names.size()));
  data.append(names);
  const QByteArray record = richrecord::wordRecord(richrecord::HotspotBegin, data);
  needParagraph();
  append(record);
  append(richrecord::byteRecord(richrecord::HotspotEnd));
}

void RichText::appendDocLink(const QString& replicaId, const QString& viewUnid, const QString& noteUnid,
                             const QString& description) {
  QByteArray data;
  appendId(data, replicaId.isEmpty() ? u"0000000000000000"_s : replicaId);
  appendUnid(data, viewUnid);
  appendUnid(data, noteUnid);
  data.append(toLmbcs(description));
  data.append(2, '\0');  // ends the description and an empty server hint
  const QByteArray record = richrecord::wordRecord(richrecord::Link, data);
  needParagraph();
  append(record);
}

void RichText::beginTable(int rows, int columns) {
  if (rows < 1 || rows > 255 || columns < 1 || columns > 255) {
    refuse(u"A table cannot have %1 rows and %2 columns."_s.arg(rows).arg(columns));
  }
  const bool nested = openTables_ > 0;
  // Margins and spaces between cells, all left at zero.
  append(richrecord::byteRecord(nested ? richrecord::NestedTableBegin : richrecord::TableBegin,
                                QByteArray(12, '\0')));
}

void RichText::beginCell(int row, int column) {
  if (openTables_ == 0) refuse(u"A table cell needs a table."_s);
  if (row < 0 || row > 254 || column < 0 || column > 254) {
    refuse(u"A table cannot have a cell at row %1 and column %2."_s.arg(row).arg(column));
  }
  QByteArray data;
  data.append(char(row));
  data.append(char(column));
  append(richrecord::byteRecord(openTables_ > 1 ? richrecord::NestedTableCell : richrecord::TableCell, data));
}

void RichText::endTable() {
  if (openTables_ == 0) refuse(u"There is no table to end."_s);
  append(richrecord::byteRecord(openTables_ > 1 ? richrecord::NestedTableEnd : richrecord::TableEnd));
}

void RichText::appendRaw(const QByteArray& record) {
  if (record.isEmpty() || richrecord::wholeLength(record) != record.size()) {
    refuse(u"A rich text record of %1 bytes tells another length."_s.arg(record.size()));
  }
  append(record);
}

QString RichText::plainText() const {
  QString text;
  bool first = true;
  for (const RichElement& element : elements_) {
    if (element.kind == Kind::Text) {
      for (const QChar c : element.text) c == u'\n' ? text.append(QLatin1String("\r\n")) : text.append(c);
    } else if (element.kind == Kind::Break) {
      text.append(QLatin1String("\r\n"));
    } else if (element.kind == Kind::Paragraph) {
      if (!first) text.append(QLatin1String("\r\n"));
      first = false;
    }
  }
  return text;
}

QString RichText::formattedText(bool stripTabs, int lineLength) const {
  QString plain = plainText();
  if (stripTabs) plain.remove(u'\t');
  if (lineLength <= 0) return plain;
  QString text;
  text.reserve(plain.size());
  for (QStringView line : QStringView(plain).split(u"\r\n"_s)) {
    while (line.size() > lineLength) {
      const Cut cut = cutOf(line, lineLength);
      text.append(line.first(cut.end)).append(QLatin1String("\r\n"));
      line = line.sliced(cut.next);
    }
    text.append(line).append(QLatin1String("\r\n"));
  }
  text.chop(2);
  return text;
}

}  // namespace lens
