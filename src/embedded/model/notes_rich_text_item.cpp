#include "embedded/model/notes_rich_text_item.h"

#include <algorithm>

#include "embedded/richtext/rich_text.h"
#include "notes/numbers.h"

namespace lens {

const MemberTable& NotesRichTextItem::members() const {
  static const MemberTable table(itemMembers(),
                                 {method<&NotesRichTextItem::formattedText>(u"GETFORMATTEDTEXT", 2, 2)});
  return table;
}

Value NotesRichTextItem::formattedText(const Arguments& arguments) {
  const bool stripTabs = arguments[0].boolean();
  const int lineLength = std::max(0, roundToInt32(arguments[1].number()));
  return RichText::fromBytes(item().data()).formattedText(stripTabs, lineLength);
}

}  // namespace lens
