// The fields that a form defines.
#pragma once

#include <QString>
#include <QVector>

#include "embedded/format/note.h"

namespace lens {

struct DesignField {
  QString name;
  int type = 0;  // as the object model counts types, see objectModelType
};

// Each name once: first those that the form lists in "$Fields", then others of its body, then other
// items that stand for a field. A field whose type nothing tells is text. Damaged bytes end the reading
// of their item.
QVector<DesignField> fieldsOf(const Note& form);

}  // namespace lens
