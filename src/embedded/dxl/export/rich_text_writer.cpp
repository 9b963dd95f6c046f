#include "embedded/dxl/export/rich_text_writer.h"

#include <QBuffer>

#include "embedded/dxl/export/rich_text_elements_writer.h"
#include "embedded/dxl/rich_text_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

bool isSameItem(const Item& a, const Item& b) {
  return a.name == b.name && a.flags == b.flags && a.value == b.value;
}

// Whether an import would make the same data of it, and keep the same elements.
bool readsBack(const RichText& text, QByteArrayView data, const QVector<Item>& kept,
               const QVector<KeptPlace>& places, bool fields) {
  QBuffer xml;
  xml.open(QIODevice::ReadWrite);
  DxlWriter writer(xml);
  writer.beginRoot(u"richtext"_s);
  RichTextElementsWriter(writer, text, places, fields).write();
  writer.end();
  writer.endDocument();
  xml.seek(0);
  DxlSource source(xml);
  DxlReader in(source);
  FileFindings findings;
  ReadContext context{in, findings};
  Note note;
  QVector<FormField> formFields;
  try {
    in.next();
    const QByteArray again = readRichText(context, note, fields ? &formFields : nullptr);
    in.finish();
    return again == data &&
           std::equal(note.items.cbegin(), note.items.cend(), kept.cbegin(), kept.cend(), isSameItem);
  } catch (const RuntimeError&) {
    return false;
  }
}

bool hasParagraph(const RichText& text) {
  for (const RichElement& element : text.elements()) {
    if (element.kind == RichElement::Kind::Paragraph) return true;
  }
  return false;
}

}  // namespace

bool writeRichText(DxlWriter& out, QByteArrayView data, const QVector<Item>& kept, bool fields) {
  QVector<KeptPlace> places;
  if (!kept.isEmpty() && !readKeptPlaces(kept, places)) return false;
  const RichText text = RichText::fromBytes(data);
  const bool written = text.complete() && (hasParagraph(text) || !kept.isEmpty() || fields);
  if (!written || !readsBack(text, data, kept, places, fields)) return false;
  out.begin(u"richtext"_s);
  RichTextElementsWriter(out, text, places, fields).write();
  out.end();
  return true;
}

}  // namespace lens
