// The window that picks a database for the client: a record of its controls.
#pragma once

#include "shell/owned_window.h"
#include "ui_form3.h"

namespace lens {

class Form3 : public OwnedWindow, public Ui::Form3 {
  Q_OBJECT

 public:
  explicit Form3(QWidget* owner = nullptr);
};

}  // namespace lens
