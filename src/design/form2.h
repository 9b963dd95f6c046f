// The window that copies or moves a design note into another database: a record of its controls.
#pragma once

#include "shell/owned_window.h"
#include "ui_form2.h"

namespace lens {

class Form2 : public OwnedWindow, public Ui::Form2 {
  Q_OBJECT

 public:
  explicit Form2(QWidget* owner = nullptr);
};

}  // namespace lens
