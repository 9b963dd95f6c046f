// The converters' library can ask Windows for its time zone and its language, which takes the rest of ICU.
// Nobody asks.
#include "unicode/uloc.h"
#include "wintz.h"

U_CAPI const char* U_EXPORT2 uprv_detectWindowsTimeZone() {
  return nullptr;
}

U_CAPI int32_t U_EXPORT2 uloc_canonicalize(const char*, char*, int32_t, UErrorCode* status) {
  *status = U_UNSUPPORTED_ERROR;
  return 0;
}
