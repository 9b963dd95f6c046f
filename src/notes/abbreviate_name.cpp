#include "notes/abbreviate_name.h"

namespace lens {

QString abbreviateName(const QString& name) {
  QString result = name;
  for (const QLatin1String label : {QLatin1String("CN="), QLatin1String("O="), QLatin1String("OU="),
                                    QLatin1String("OU1="), QLatin1String("OU2="), QLatin1String("C=")})
    result.remove(label);
  return result;
}

}  // namespace lens
