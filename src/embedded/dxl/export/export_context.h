// What the writers of the single elements share while one file is exported.
#pragma once

#include <functional>

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/store/database.h"

namespace lens {

struct ExportContext {
  const Database& database;
  DxlWriter& out;
  std::function<bool()> goOn;  // asked often; false cancels
};

// Thrown when the user stops the export.
struct ExportCancelled {};

}  // namespace lens
