#include "embedded/search/query_error.h"

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

// So much of a word is enough to find it.
static constexpr qsizetype kShownWord = 40;

void raiseQueryError(const QString& reason, qsizetype place, QStringView word) {
  QString text = u"The query cannot be understood. %1 (character %2)"_s.arg(reason).arg(place + 1);
  if (!word.isEmpty()) text += u": '%1'"_s.arg(word.left(kShownWord));
  throw RuntimeError(kQueryError, text);
}

}  // namespace lens
