// The window that asks for the file, the width and whether contents are written: a record of its controls.
#pragma once

#include <QDialog>

#include "controls/common_dialog.h"
#include "ui_dump_to_file.h"

namespace lens {

class DumpToFile : public QDialog, public Ui::DumpToFile {
  Q_OBJECT

 public:
  explicit DumpToFile(QWidget* owner);

  CommonDialog* cmdDialog1;

 protected:
  // Esc presses Cancel.
  void reject() override { cmdCancel->click.fire(); }
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
