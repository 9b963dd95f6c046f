// Attached files: "object/file" becomes an object of the database and a "$FILE" item.
#pragma once

#include "embedded/dxl/import_context.h"

namespace lens {

// The name without directories. "" when nothing usable is left: empty, "." and "..", names that some
// systems reserve for devices, control characters.
QString safeFileName(const QString& name);

// The word for a host type; "" when there is none.
QString hostTypeName(quint16 hostType);

// The reader stands at "object". False when it holds no file; it was kept as it is then.
bool readObjectElement(ImportContext& context, Note& note, const QString& itemName, quint16 flags);

}  // namespace lens
