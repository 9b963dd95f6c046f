#include "editing/rich_text_replacement.h"

#include "notes/literals.h"

namespace lens {

bool replaceInRichText(Statements& step, const NotesRichTextItem& item, const QString& search,
                       const QString& replace) {
  // The range spans the whole item; the navigator's place plays no part in it.
  NotesRichTextNavigator navigator;
  NotesRichTextRange range;
  step([&] { navigator = item.createNavigator(); });
  step([&] { navigator.findFirstElement(NotesRichTextNavigator::kTextParagraph); });
  step([&] { range = item.createRange(); });
  constexpr int kEveryHit = NotesRichTextRange::kIgnoreCase + NotesRichTextRange::kAllHits;
  double hits = 0;
  step([&] { hits = range.findAndReplace(search, replace, kEveryHit); });
  if (hits < 1) return false;
  step([&] { item.compact(); });
  return true;
}

}  // namespace lens
