#include "host/escape_watch.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLibrary>
#include <cstdlib>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

#include "notes/literals.h"

namespace lens {
namespace {

constexpr qint64 kLookEveryMs = 50;

bool isEscape(const QEvent* event) {
  return static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Escape;
}

#if QT_CONFIG(xcb)
// The display server's answer to the question which keys are down, as its protocol lays it out.
struct KeysReply {
  quint8 type, unused;
  quint16 sequence;
  quint32 length;
  quint8 keys[32];  // a bit for each key
};
struct Cookie {
  unsigned int sequence;
};

// A press waits in the connection, where only the event loop may take it. Asking for the keys that are down
// leaves all events where they are. The library is there wherever the platform is.
bool isDownOnDisplay() {
  const auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  if (!x11 || !x11->connection() || !QGuiApplication::focusWindow()) return false;
  using Ask = Cookie (*)(xcb_connection_t*);
  using Answer = KeysReply* (*)(xcb_connection_t*, Cookie, void**);
  static QLibrary library(u"xcb"_s, 1);
  static const auto ask = reinterpret_cast<Ask>(library.resolve("xcb_query_keymap"));
  static const auto answer = reinterpret_cast<Answer>(library.resolve("xcb_query_keymap_reply"));
  if (!ask || !answer) return false;
  KeysReply* reply = answer(x11->connection(), ask(x11->connection()), nullptr);
  constexpr int kEscape = 9;  // the code of the key, whatever the layout
  const bool down = reply && (reply->keys[kEscape / 8] & (1 << (kEscape % 8)));
  std::free(reply);
  return down;
}
#elif defined(Q_OS_WIN)
bool isDownOnDisplay() {
  return QGuiApplication::focusWindow() && (GetAsyncKeyState(VK_ESCAPE) & 0x8000);
}
#else
bool isDownOnDisplay() {
  return false;
}
#endif

}  // namespace

bool EscapeWatch::pressed() {
  if (looked_.isValid() && looked_.elapsed() < kLookEveryMs) return false;
  looked_.start();
  if (isPosted()) return true;
  // The press that was told already is not told again before it has gone through the event loop.
  if (state_ == State::Swallowing || !isDownOnDisplay()) return false;
  swallowTold();
  return true;
}

// Only key presses are taken from what was posted, and those of other keys are posted again.
bool EscapeWatch::isPosted() {
  const State before = std::exchange(state_, State::Looking);
  found_ = false;
  if (before == State::Idle) QCoreApplication::instance()->installEventFilter(this);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::KeyPress);
  if (before == State::Idle) QCoreApplication::instance()->removeEventFilter(this);
  state_ = before;
  for (const auto& [receiver, event] : std::exchange(held_, {}))
    if (receiver)
      QCoreApplication::postEvent(receiver, event);
    else
      delete event;
  return found_;
}

// The event loop will get the press that ended the work: it must not close a window too.
void EscapeWatch::swallowTold() {
  state_ = State::Swallowing;
  swallowed_ = false;
  QCoreApplication::instance()->installEventFilter(this);
}

bool EscapeWatch::eventFilter(QObject* receiver, QEvent* event) {
  const QEvent::Type type = event->type();
  if (state_ == State::Looking) {
    if (type != QEvent::KeyPress) return false;
    if (isEscape(event))
      found_ = true;
    else
      held_.push_back({receiver, event->clone()});
    return true;
  }
  const bool key = type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride;
  if (!key || !isEscape(event)) return false;
  const bool again = static_cast<QKeyEvent*>(event)->isAutoRepeat();
  const bool nextPress = type == QEvent::KeyPress && !again && std::exchange(swallowed_, true);
  if (nextPress || (type == QEvent::KeyRelease && !again)) {
    QCoreApplication::instance()->removeEventFilter(this);
    state_ = State::Idle;
  }
  if (nextPress) return false;  // the release went to another program
  event->accept();              // so that no shortcut is looked for
  return true;
}

}  // namespace lens
