// A line that one types in.
#pragma once

#include <QLineEdit>

#include "controls/event.h"

namespace lens {

class TextBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit TextBox(QWidget* parent = nullptr);

  // Runs whenever the text has become another one, typed or set by code.
  Event<> change;
  // Runs before a typed character comes in and may change it; 0 or 13 keep it out. Also runs with 13
  // for Enter and 27 for Esc. Pasting does not run it.
  Event<int&> keyPress;
  // Key code and shift state, see keys.h.
  Event<int, int> keyDown;

  void setText(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;

 private:
  bool setByCode_ = false;  // while the toolkit's signal is not the user's
};

}  // namespace lens
