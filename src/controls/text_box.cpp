#include "controls/text_box.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <limits>
#include <utility>

#include "controls/keys.h"

namespace lens {

TextBox::TextBox(QWidget* parent) : QLineEdit(parent) {
  setMaxLength(std::numeric_limits<int>::max());
  connect(this, &QLineEdit::textChanged, this, [this] {
    if (!std::exchange(setByCode_, false)) change.fire();
  });
}

void TextBox::setText(const QString& text) {
  setByCode_ = true;
  QLineEdit::setText(text);
  if (!std::exchange(setByCode_, false)) change.raise();
}

void TextBox::keyPressEvent(QKeyEvent* event) {
  QString replacement;
  switch (takeKey(*event, keyDown, keyPress, replacement)) {
    case TypedKey::Native:
      return QLineEdit::keyPressEvent(event);
    case TypedKey::PassOn:
      return event->ignore();
    case TypedKey::InsertText:
      insert(replacement);
      [[fallthrough]];
    case TypedKey::Handled:
      return event->accept();
  }
}

void TextBox::inputMethodEvent(QInputMethodEvent* event) {
  offerInput(*event, keyPress, [this](QInputMethodEvent* offered) { QLineEdit::inputMethodEvent(offered); });
}

}  // namespace lens
