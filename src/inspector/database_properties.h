// Shows a database's icon note as the current document and explains its "$Flags".
#pragma once

#include <QString>

#include "host/host.h"
#include "shell/form1.h"
#include "shell/globals.h"

namespace lens {

class DatabaseProperties {
 public:
  DatabaseProperties(Form1& form, Globals& state, Host& host);

  void lastModified_DblClick();
  // Fills the content box with the legend and colours what the flags name.
  void loadDBInfo(const QString& flags);

 private:
  void clearDocumentControls();

  Form1& form_;
  Globals& state_;
  Host& host_;
};

}  // namespace lens
