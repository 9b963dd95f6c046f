// The window that copies or moves a design note into another database: a record of its controls.
#pragma once

#include <QDialog>

#include "controls/event.h"
#include "ui_form2.h"

namespace lens {

class Form2 : public QDialog, public Ui::Form2 {
  Q_OBJECT

 public:
  explicit Form2(QWidget* owner = nullptr);

  Event<> unload;     // the window is about to go
  Event<> terminate;  // the window has gone

 protected:
  void reject() override {}
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
