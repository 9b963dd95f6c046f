#include "embedded/dxl/export/rich_text_writer.h"

#include "embedded/dxl/export/read_back.h"
#include "embedded/dxl/export/rich_text_elements_writer.h"
#include "embedded/dxl/rich_text_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

// Whether an import would make the same data of it, and keep the same elements.
bool readsBack(const RichText& text, QByteArrayView data, const QVector<Item>& kept,
               const QVector<KeptPlace>& places, bool fields) {
  const auto write = [&](DxlWriter& writer) {
    writer.beginRoot(u"richtext"_s);
    RichTextElementsWriter(writer, text, places, fields).write();
    writer.end();
    return true;
  };
  const auto read = [&](ReadContext& context) {
    Note note;
    QVector<FormField> formFields;
    context.in.next();
    const QByteArray again = readRichText(context, note, fields ? &formFields : nullptr);
    context.in.finish();
    return again == data &&
           std::equal(note.items.cbegin(), note.items.cend(), kept.cbegin(), kept.cend(), isSameItem);
  };
  return comesBack(write, read);
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
