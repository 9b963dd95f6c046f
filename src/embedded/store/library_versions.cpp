#include "embedded/store/library_versions.h"

#include <sqlite3.h>
#include <unicode/uversion.h>

#include "notes/literals.h"

namespace lens {

QStringList libraryVersions() {
  UVersionInfo numbers;
  u_getVersion(numbers);
  char icu[U_MAX_VERSION_STRING_LENGTH];
  u_versionToString(numbers, icu);
  return {u"SQLite "_s + QLatin1StringView(sqlite3_libversion()), u"ICU "_s + QLatin1StringView(icu)};
}

}  // namespace lens
