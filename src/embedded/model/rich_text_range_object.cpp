#include "embedded/model/rich_text_range_object.h"

#include <limits>

#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {

const MemberTable& RichTextRangeObject::members() const {
  static const MemberTable table{
      method<&RichTextRangeObject::findAndReplace>(u"FINDANDREPLACE", 3, 3),
  };
  return table;
}

// What is looked for, what takes its place, and the options: 1 ignores case, 16 replaces all hits and not
// the first alone. The others of the platform are refused rather than passed over. Gives the number of
// replacements.
Value RichTextRangeObject::findAndReplace(const Arguments& arguments) {
  constexpr qint32 kIgnoreCase = 1, kAll = 16;
  const QString search = arguments[0].text(), replacement = arguments[1].text();
  const qint32 options = roundToInt32(arguments[2].number());
  if (options & ~(kIgnoreCase | kAll))
    throw RuntimeError(err::InvalidCall, u"%1: FINDANDREPLACE knows the options 1 and 16, not %2"_s.arg(
                                             item_->databasePath(), QString::number(options)));
  RichText text = item_->richText();
  const int most = options & kAll ? std::numeric_limits<int>::max() : 1;
  const int replaced = text.replace(search, replacement,
                                    options & kIgnoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive, most);
  if (replaced > 0) item_->setRichText(text);
  return replaced;
}

}  // namespace lens
