#include "notes/version.h"

namespace lens {

QString programVersion() {
  return QStringLiteral(LENS_VERSION);
}

}  // namespace lens
