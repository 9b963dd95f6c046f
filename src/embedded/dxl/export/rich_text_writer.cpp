#include "embedded/dxl/export/rich_text_writer.h"

#include <QBuffer>

#include "embedded/dxl/export/rich_text_elements_writer.h"
#include "embedded/dxl/rich_text_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

// The data that an import would make of it; empty when it would refuse.
QByteArray readBack(const RichText& text) {
  QBuffer xml;
  xml.open(QIODevice::ReadWrite);
  DxlWriter writer(xml);
  writer.beginRoot(u"richtext"_s);
  RichTextElementsWriter(writer, text).write();
  writer.end();
  writer.endDocument();
  xml.seek(0);
  DxlSource source(xml);
  DxlReader in(source);
  FileFindings findings;
  ReadContext context{in, findings};
  Note note;
  try {
    in.next();
    const QByteArray data = readRichText(context, note);
    return note.items.isEmpty() ? data : QByteArray();
  } catch (const RuntimeError&) {
    return {};
  }
}

bool hasParagraph(const RichText& text) {
  for (const RichElement& element : text.elements()) {
    if (element.kind == RichElement::Kind::Paragraph) return true;
  }
  return false;
}

}  // namespace

bool writeRichText(DxlWriter& out, QByteArrayView data) {
  const RichText text = RichText::fromBytes(data);
  if (!text.complete() || !hasParagraph(text) || readBack(text) != data) return false;
  out.begin(u"richtext"_s);
  RichTextElementsWriter(out, text).write();
  out.end();
  return true;
}

}  // namespace lens
