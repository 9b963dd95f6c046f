#include "embedded/model/rich_text_navigator_object.h"

#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

using Kind = RichElement::Kind;

// Kinds of elements as programs name them.
bool isElement(qint32 type, Kind kind) {
  constexpr qint32 kTable = 1, kTextRun = 3, kParagraph = 4, kLink = 5, kTableCell = 7, kAttachment = 8;
  switch (type) {
    case kTable:
      return kind == Kind::TableBegin;
    case kTextRun:
      return kind == Kind::Text || kind == Kind::Break;
    case kParagraph:
      return kind == Kind::Paragraph;
    case kLink:
      return kind == Kind::Link;
    case kTableCell:
      return kind == Kind::TableCell;
    case kAttachment:
      return kind == Kind::Attachment;
    default:
      return false;
  }
}

}  // namespace

const MemberTable& RichTextNavigatorObject::members() const {
  static const MemberTable table{Members{
      // Whether there is one; a text without it is no failure, since nobody looks at the result.
      {u"FINDFIRSTELEMENT",
       [](RichTextNavigatorObject& self, qint32 type) {
         const RichText text = self.open_.richText();
         for (const RichElement& element : text.elements())
           if (isElement(type, element.kind)) return true;
         return false;
       }},
  }};
  return table;
}

}  // namespace lens
