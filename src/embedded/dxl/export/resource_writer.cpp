#include "embedded/dxl/export/design_children.h"
#include "embedded/dxl/export/script_parts.h"
#include "embedded/dxl/resource_elements.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {

namespace {

// The bytes that the segments of a picture or file carry. What stands otherwise in the records shows when
// they are made again.
QByteArray segmentBytes(const Item& item, quint8 segmentKind, qsizetype spare) {
  constexpr qsizetype kHead = 6;
  QByteArray bytes;
  const RichText records = RichText::fromBytes(item.data());
  for (const RichElement& element : records.elements()) {
    if (quint8(element.record[0]) != segmentKind) continue;
    ByteReader reader(element.record);
    reader.skip(kHead);
    const quint16 size = reader.u16();
    reader.skip(2 + spare);
    bytes.append(reader.take(size));
  }
  return bytes;
}

const Item* recordsOf(const Note& note, QStringView name) {
  const Item* const item = note.find(name);
  return item && item->value.size() >= 2 && item->type() == itemtype::RichText ? item : nullptr;
}

void addData(DesignContent& content, const QString& element, const QByteArray& bytes) {
  content.write(element, [&](DxlWriter& out) {
    out.begin(element);
    out.base64(bytes);
    out.end();
  });
}

void addPicture(DesignContent& content) {
  const Item* const item = recordsOf(content.note(), u"$ImageData");
  if (!item) return;
  const QByteArray bytes = segmentBytes(*item, kImageSegment, 0);
  if (item->data() == imageRecords(kGifImage, bytes))
    addData(content, u"gif"_s, bytes);
  else
    addData(content, u"jpeg"_s, bytes);
}

}  // namespace

void addResourceContent(DesignContent& content) {
  const bool style = content.is(u"stylesheetresource");
  const QString charset = content.note().text(u"$MimeCharSet");
  if (!charset.isEmpty() && !content.is(u"imageresource")) content.attribute(u"charset"_s, charset);
  if (content.is(u"imageresource"))
    addPicture(content);
  else if (const Item* const item = recordsOf(content.note(), style ? u"$StyleSheetData" : u"$FileData"))
    addData(content, u"filedata"_s, segmentBytes(*item, kFileSegment, kFileSegmentSpare));
}

void addLibraryContent(DesignContent& content) {
  const Note& note = content.note();
  if (content.has(u"code")) return;
  addScriptParts(content, note.text(content.is(u"databasescript") ? u"$DBScript" : u"$ScriptLib"));
  const QString javaScript = note.text(u"$JavaScriptLibrary");
  if (javaScript.isEmpty() || content.is(u"databasescript")) return;
  content.write(u"code"_s, [&](DxlWriter& out) {
    out.begin(u"code"_s);
    out.attribute(u"event"_s, u"library"_s);
    out.begin(u"javascript"_s);
    out.literal(javaScript);
    out.end();
    out.end();
  });
}

}  // namespace lens
