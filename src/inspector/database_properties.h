// Shows a database's icon note as the current document and explains its "$Flags".
#pragma once

#include <QString>

#include "shell/desk.h"

namespace lens {

class DatabaseProperties {
 public:
  explicit DatabaseProperties(Desk& desk);

  void lastModified_DblClick();
  // Fills the content box with the legend and colours what the flags name.
  void loadDBInfo(const QString& flags);

 private:
  void clearDocumentControls();

  Desk& desk_;
};

}  // namespace lens
