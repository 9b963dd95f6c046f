#include "embedded/model/rich_text_item_object.h"

#include <algorithm>

#include "embedded/model/attaching.h"
#include "embedded/model/embedded_file_object.h"
#include "embedded/model/rich_text_navigator_object.h"
#include "embedded/model/rich_text_range_object.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {
namespace {

Value embedFile(const OpenItem& open, qint32 kind, const Value& path) {
  constexpr qint32 kAttachment = 1454;
  if (kind != kAttachment)
    throw RuntimeError(err::InvalidCall,
                       u"%1: EMBEDOBJECT attaches files (%2), nothing of kind %3"_s.arg(
                           open.databasePath(), QString::number(kAttachment), QString::number(kind)));
  RichText text = open.richText();
  const FileObject file = attachFile(*open.note(), path.text(), text);
  open.setRichText(text);
  return newObject<EmbeddedFileObject>(open.note(), file);
}

Value shownFiles(const OpenItem& open) {
  QVector<Value> objects;
  for (const FileObject& file : open.shownFiles())
    objects.push_back(newObject<EmbeddedFileObject>(open.note(), file));
  return objects.isEmpty() ? Value() : Value::array(std::move(objects));
}

}  // namespace

Value newItemObject(OpenItem open) {
  if (open.item().type() == itemtype::RichText) return newObject<RichTextItemObject>(std::move(open));
  return newObject<ItemObject>(std::move(open));
}

const MemberTable& RichTextItemObject::members() const {
  static const MemberTable table{itemMembers(), textMembers()};
  return table;
}

Members RichTextItemObject::textMembers() {
  return {
      {u"GETFORMATTEDTEXT",
       [](RichTextItemObject& self, bool stripTabs, qint32 lineLength) {
         return self.open_.richText().formattedText(stripTabs, std::max(0, lineLength));
       }},
      {u"APPENDTEXT",
       [](RichTextItemObject& self, const Value& more) {
         RichText text = self.open_.richText();
         text.appendText(more.text());
         self.open_.setRichText(text);
       }},
      // Kind, class (only objects of other programs have one) and the path of the file.
      {u"EMBEDOBJECT", [](RichTextItemObject& self, qint32 kind, const Value&,
                          const Value& path) { return embedFile(self.open_, kind, path); }},
      {u"EMBEDDEDOBJECTS", [](RichTextItemObject& self) { return shownFiles(self.open_); }},
      {u"COMPACT",
       [](RichTextItemObject& self) {
         RichText text = self.open_.richText();
         if (text.compact()) self.open_.setRichText(text);
       }},
      {u"CREATENAVIGATOR",
       [](RichTextItemObject& self) {
         self.open_.richText();
         return newObject<RichTextNavigatorObject>(self.open_);
       }},
      {u"CREATERANGE",
       [](RichTextItemObject& self) {
         self.open_.richText();
         return newObject<RichTextRangeObject>(self.open_);
       }},
  };
}

}  // namespace lens
