#include "embedded/dxl/record_writer.h"

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/richtext/rich_records.h"

namespace lens {

void RecordWriter::byteRecord(quint8 kind, QByteArrayView data) {
  bytes_.append(char(kind)).append(char(data.size() + 2)).append(data.data(), data.size());
}

void RecordWriter::needParagraph() {
  if (!inParagraph_) beginParagraph();
}

void RecordWriter::beginParagraph() {
  byteRecord(richrecord::Paragraph);
  inParagraph_ = true;
}

void RecordWriter::appendText(QStringView text, const RichFont& font) {
  // A character takes three bytes at most, so this fits one record.
  constexpr qsizetype kSlice = 20000;
  needParagraph();
  while (!text.isEmpty()) {
    qsizetype count = qMin(kSlice, text.size());
    if (count < text.size() && text[count - 1].isHighSurrogate()) ++count;
    QByteArray stored = toLmbcs(text.first(count));
    stored.replace('\n', '\0');
    text = text.sliced(count);
    bytes_.append(char(richrecord::Text)).append(char(0xFF));
    appendU16(bytes_, quint16(stored.size() + 8));
    for (const quint8 part : {font.face, font.attributes, font.color, font.points}) bytes_.append(char(part));
    bytes_.append(stored);
    if (stored.size() % 2 != 0) bytes_.append('\0');
  }
}

void RecordWriter::appendAttachment(const QString& internalName, const QString& caption) {
  RichText one;
  one.appendAttachment(internalName, caption);
  needParagraph();
  for (const RichElement& element : one.elements()) {
    if (element.kind != RichElement::Kind::Paragraph) appendRecord(element.record);
  }
}

void RecordWriter::beginTable() {
  // Margins and spaces between cells, all left at zero.
  byteRecord(openTables_ > 0 ? richrecord::NestedTableBegin : richrecord::TableBegin, QByteArray(12, '\0'));
  ++openTables_;
  inParagraph_ = false;
}

void RecordWriter::beginCell(int row, int column) {
  const char data[] = {char(row), char(column)};
  byteRecord(openTables_ > 1 ? richrecord::NestedTableCell : richrecord::TableCell, QByteArrayView(data, 2));
  inParagraph_ = false;
}

void RecordWriter::endTable() {
  byteRecord(openTables_ > 1 ? richrecord::NestedTableEnd : richrecord::TableEnd);
  --openTables_;
  inParagraph_ = false;
}

bool RecordWriter::appendRecord(QByteArrayView record) {
  if (record.isEmpty() || richrecord::wholeLength(record) != record.size()) return false;
  bytes_.append(record.data(), record.size());
  if (record.size() % 2 != 0) bytes_.append('\0');
  return true;
}

bool RecordWriter::appendInline(QByteArrayView record) {
  needParagraph();
  return appendRecord(record);
}

}  // namespace lens
