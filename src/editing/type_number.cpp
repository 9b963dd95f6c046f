#include "editing/type_number.h"

#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/text_routines.h"

namespace lens {

QString typeText(const QString& sentence) {
  const QString behind = rightFrom(sentence, u"("_s);
  const qsizetype end = behind.indexOf(u')');
  if (end < 0) throw RuntimeError(err::InvalidCall);
  return behind.left(end);
}

int typeNumber(const QString& text) {
  return Int16(roundToInt32(numberPrefix(text)));
}

}  // namespace lens
