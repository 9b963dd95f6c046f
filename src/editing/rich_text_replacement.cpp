#include "editing/rich_text_replacement.h"

namespace lens {
namespace {

constexpr int kTextParagraph = 4;
constexpr int kIgnoreCase = 1;
constexpr int kAllHits = 16;

}  // namespace

bool replaceInRichText(Statements& step, const Object& item, const QString& search, const QString& replace) {
  // The range spans the whole item; the navigator's place plays no part in it.
  Object navigator, range;
  step([&] { navigator = item.call(QStringLiteral("CREATENAVIGATOR")).object(); });
  step([&] { navigator.call(QStringLiteral("FINDFIRSTELEMENT"), kTextParagraph); });
  step([&] { range = item.call(QStringLiteral("CREATERANGE")).object(); });
  double hits = 0;
  step([&] {
    hits = range.call(QStringLiteral("FINDANDREPLACE"), search, replace, kIgnoreCase + kAllHits).number();
  });
  if (hits < 1) return false;
  step([&] { item.call(QStringLiteral("COMPACT")); });
  return true;
}

}  // namespace lens
