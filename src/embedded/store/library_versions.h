// The libraries that the engine runs on.
#pragma once

#include <QStringList>

namespace lens {

// Their names with the versions that are loaded: "SQLite 3.40.1", "ICU 72.1".
QStringList libraryVersions();

}  // namespace lens
