// The window that picks a database for the client: a record of its controls.
#pragma once

#include <QDialog>

#include "controls/event.h"
#include "ui_form3.h"

namespace lens {

class Form3 : public QDialog, public Ui::Form3 {
  Q_OBJECT

 public:
  explicit Form3(QWidget* owner = nullptr);

  Event<> unload;     // the window is about to go
  Event<> terminate;  // the window has gone

 protected:
  void reject() override {}
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
