#include "embedded/model/rich_text_range_object.h"

#include <limits>

#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {

const MemberTable& RichTextRangeObject::members() const {
  static const MemberTable table{Members{
      // What is looked for, what takes its place, and the options: 1 ignores case, 16 replaces all hits and
      // not the first alone. The others of the platform are refused rather than passed over. Gives the
      // number of replacements.
      {u"FINDANDREPLACE",
       [](RichTextRangeObject& self, const QString& search, const QString& replacement, qint32 options) {
         constexpr qint32 kIgnoreCase = 1, kAll = 16;
         if (options & ~(kIgnoreCase | kAll))
           throw RuntimeError(err::InvalidCall,
                              u"%1: FINDANDREPLACE knows the options 1 and 16, not %2"_s.arg(
                                  self.open_.databasePath(), QString::number(options)));
         RichText text = self.open_.richText();
         const int most = options & kAll ? std::numeric_limits<int>::max() : 1;
         const auto cases = options & kIgnoreCase ? Qt::CaseInsensitive : Qt::CaseSensitive;
         const int replaced = text.replace(search, replacement, cases, most);
         if (replaced > 0) self.open_.setRichText(text);
         return replaced;
       }},
  }};
  return table;
}

}  // namespace lens
