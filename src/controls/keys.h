// Keys as the procedures of the program know them, from the keys of the desktop.
#pragma once

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QString>
#include <functional>

#include "controls/event.h"

namespace lens {

// Key codes that procedures compare with. Letters and digits have the code of their capital.
namespace key {
inline constexpr int Backspace = 8;
inline constexpr int Tab = 9;
inline constexpr int Enter = 13;
inline constexpr int Escape = 27;
inline constexpr int Space = 32;
inline constexpr int PageUp = 33;
inline constexpr int PageDown = 34;
inline constexpr int End = 35;
inline constexpr int Home = 36;
inline constexpr int Left = 37;
inline constexpr int Up = 38;
inline constexpr int Right = 39;
inline constexpr int Down = 40;
inline constexpr int Insert = 45;
inline constexpr int Delete = 46;
inline constexpr int F1 = 112;  // to F12 = 123
}  // namespace key

// 0 for a key that no procedure asks about.
int keyCode(const QKeyEvent& event);

// 1 Shift, 2 Control, 4 Alt, added up.
int shiftState(Qt::KeyboardModifiers modifiers);

// 1 left, 2 right, 4 middle; 0 for any other.
int buttonNumber(Qt::MouseButton button);

// The characters that the key types: empty for control characters and for keys held with Control or
// Alt alone (both together are AltGr).
QString typedText(const QKeyEvent& event);

// Offers each UTF-16 unit to the procedure, which may change it; 0 and 13 leave it out.
QString throughKeyPress(const QString& typed, const Event<int&>& keyPress);

// Passes what an input method gives on to `handle`, its text as the procedure lets it through.
void offerInput(QInputMethodEvent& event, const Event<int&>& keyPress,
                const std::function<void(QInputMethodEvent*)>& handle);

// What a key means to a box that one types in. Runs keyDown and keyPress.
enum class TypedKey {
  Native,     // the widget does what it always does
  Handled,    // nothing is left to do
  PassOn,     // Enter or Esc that no procedure wanted: the window may use it
  InsertText  // `text` is to be inserted in place of the typed one
};
TypedKey takeKey(const QKeyEvent& event, const Event<int, int>& keyDown, const Event<int&>& keyPress,
                 QString& text);

}  // namespace lens
