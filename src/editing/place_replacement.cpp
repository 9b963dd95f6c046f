#include "editing/place_replacement.h"

#include "notes/numbers.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

Value replaced(const QString& text, int type, const Replacement& replacement, const Regional& regional) {
  const QString changed = replaceAllText(text, replacement.search, replacement.replace);
  if (type == itemcode::Date) return regional.dateTime(changed);
  if (type == itemcode::Number) return numberPrefix(changed);
  return changed;
}

}  // namespace

bool replaceInValues(QVector<Value>& values, Places places, int type, const Replacement& replacement,
                     const Regional& regional) {
  const bool several = values.size() > 1;
  const qsizetype end = values.size() - (several && places == Places::AllButLast ? 1 : 0);
  bool any = false;
  for (qsizetype place = 0; place < end; ++place) {
    const QString text = textOf(values[place], regional);
    if (!text.contains(replacement.search)) continue;
    values[place] = replaced(text, type, replacement, regional);
    any = true;
  }
  return any;
}

}  // namespace lens
