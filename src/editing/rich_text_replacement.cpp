#include "editing/rich_text_replacement.h"

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kTextParagraph = 4;
constexpr int kIgnoreCase = 1;
constexpr int kAllHits = 16;

}  // namespace

bool replaceInRichText(Statements& step, const Object& item, const QString& search, const QString& replace) {
  // The range spans the whole item; the navigator's place plays no part in it.
  Object navigator, range;
  step([&] { navigator = item.call(u"CREATENAVIGATOR"_s).object(); });
  step([&] { navigator.call(u"FINDFIRSTELEMENT"_s, kTextParagraph); });
  step([&] { range = item.call(u"CREATERANGE"_s).object(); });
  double hits = 0;
  step([&] { hits = range.call(u"FINDANDREPLACE"_s, search, replace, kIgnoreCase + kAllHits).number(); });
  if (hits < 1) return false;
  step([&] { item.call(u"COMPACT"_s); });
  return true;
}

}  // namespace lens
