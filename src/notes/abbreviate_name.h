#pragma once

#include <QString>

namespace lens {

// The name without the labels of its components ("CN=", "O=", "OU=", "OU1=", "OU2=", "C="), wherever they
// stand, also inside another word.
QString abbreviateName(const QString& name);

}  // namespace lens
