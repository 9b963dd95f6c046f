// A script that the design tool's heads divide, as one "code" element for each part.
#pragma once

#include "embedded/dxl/export/design_content.h"

namespace lens {

// Nothing is added for a script without such heads.
void addScriptParts(DesignContent& content, const QString& script);

}  // namespace lens
