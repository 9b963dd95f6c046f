// The converters' library can ask Windows for its time zone, which takes the rest of ICU. Nobody asks.
#include "wintz.h"

U_CAPI const char* U_EXPORT2 uprv_detectWindowsTimeZone() {
  return nullptr;
}
