#include "embedded/model/rich_text_navigator_object.h"

#include "embedded/richtext/rich_text.h"
#include "notes/numbers.h"

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
  static const MemberTable table{
      method<&RichTextNavigatorObject::findFirstElement>(u"FINDFIRSTELEMENT", 1, 1),
  };
  return table;
}

// Whether there is one; a text without it is no failure, since nobody looks at the result.
Value RichTextNavigatorObject::findFirstElement(const Arguments& arguments) {
  const qint32 type = roundToInt32(arguments[0].number());
  const RichText text = item_->richText();
  for (const RichElement& element : text.elements())
    if (isElement(type, element.kind)) return true;
  return false;
}

}  // namespace lens
