#include "controls/keys.h"

namespace lens {
namespace {

struct KeyPair {
  int qtKey;
  int code;
};

constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, key::Backspace},
    {Qt::Key_Tab, key::Tab},
    {Qt::Key_Return, key::Enter},
    {Qt::Key_Enter, key::Enter},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_Escape, key::Escape},
    {Qt::Key_PageUp, key::PageUp},
    {Qt::Key_PageDown, key::PageDown},
    {Qt::Key_End, key::End},
    {Qt::Key_Home, key::Home},
    {Qt::Key_Left, key::Left},
    {Qt::Key_Up, key::Up},
    {Qt::Key_Right, key::Right},
    {Qt::Key_Down, key::Down},
    {Qt::Key_Insert, key::Insert},
    {Qt::Key_Delete, key::Delete},
};

bool isLetter(int qtKey) {
  return qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z;
}

bool isTypedUnit(QChar unit) {
  return unit.isSurrogate() ||
         (unit.unicode() >= 32 && unit.unicode() != 127 && !(unit >= QChar(0x80) && unit < QChar(0xA0)));
}

}  // namespace

int keyCode(const QKeyEvent& event) {
  const int qtKey = event.key();
  // Other signs would pass for keys: "-" has the number of Insert, "." that of Delete.
  const bool hasOwnNumber =
      qtKey == Qt::Key_Space || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) || isLetter(qtKey);
  if (hasOwnNumber) return qtKey;
  if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12) return key::F1 + qtKey - Qt::Key_F1;
  for (const KeyPair& pair : kKeys)
    if (pair.qtKey == qtKey) return pair.code;
  return 0;
}

int shiftState(Qt::KeyboardModifiers modifiers) {
  return (modifiers & Qt::ShiftModifier ? 1 : 0) + (modifiers & Qt::ControlModifier ? 2 : 0) +
         (modifiers & Qt::AltModifier ? 4 : 0);
}

int buttonNumber(Qt::MouseButton button) {
  if (button == Qt::LeftButton) return 1;
  if (button == Qt::RightButton) return 2;
  return button == Qt::MiddleButton ? 4 : 0;
}

QString typedText(const QKeyEvent& event) {
  const bool control = event.modifiers() & Qt::ControlModifier;
  const bool alt = event.modifiers() & Qt::AltModifier;
  const QString text = event.text();
  if (control != alt || (event.modifiers() & Qt::MetaModifier)) return QString();
  for (QChar unit : text)
    if (!isTypedUnit(unit)) return QString();
  return text;
}

QString throughKeyPress(const QString& typed, const Event<int&>& keyPress) {
  QString result;
  for (QChar unit : typed) {
    int code = unit.unicode();
    keyPress.fire(code);
    if (code != 0 && code != key::Enter) result += QChar(char16_t(code));
  }
  return result;
}

void offerInput(QInputMethodEvent& event, const Event<int&>& keyPress,
                const std::function<void(QInputMethodEvent*)>& handle) {
  QInputMethodEvent offered(event.preeditString(), event.attributes());
  if (!event.commitString().isEmpty())
    offered.setCommitString(throughKeyPress(event.commitString(), keyPress), event.replacementStart(),
                            event.replacementLength());
  handle(&offered);
  event.accept();
}

TypedKey takeKey(const QKeyEvent& event, const Event<int, int>& keyDown, const Event<int&>& keyPress,
                 QString& text) {
  int code = keyCode(event);
  keyDown.fire(code, shiftState(event.modifiers()));
  if (code == key::Enter || code == key::Escape) {
    const bool enter = code == key::Enter;
    keyPress.fire(code);
    const bool wanted = enter ? keyPress.isConnected() || keyDown.isConnected() : code == 0;
    return wanted ? TypedKey::Handled : TypedKey::PassOn;
  }
  const QString typed = typedText(event);
  if (typed.isEmpty() || !keyPress.isConnected()) return TypedKey::Native;
  text = throughKeyPress(typed, keyPress);
  if (text == typed) return TypedKey::Native;
  return text.isEmpty() ? TypedKey::Handled : TypedKey::InsertText;
}

}  // namespace lens
