// Writing one item of a note that is no document of a formula or of the object model.
#pragma once

#include "embedded/format/note.h"

namespace lens {

// The first item of that name takes the value and keeps its flags; a new one comes to the end.
void setItem(Note& note, const QString& name, QByteArray value, quint16 flagsOfNew = itemflag::Summary);

}  // namespace lens
