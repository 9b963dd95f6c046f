// Raw item values from outside: the lengths and counts inside them are checked before they are stored.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/dxl/import_context.h"

namespace lens {

// "" when the counts and lengths within the data (without type word) stay inside it, otherwise what
// leads outside. Types of unknown layout are not looked into.
QString rawValueFault(quint16 type, QByteArrayView data);

// Data of a raw value of type Object that carries the object's own bytes behind its descriptor: they
// become an object of the target, and the value its descriptor. False when it has another form.
bool storeInlineObject(Database& target, QByteArrayView data, QByteArray& value);

}  // namespace lens
