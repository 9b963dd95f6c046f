// Notices that the user presses Esc while the program works and takes no events.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QVector>
#include <utility>

namespace lens {

class EscapeWatch : public QObject {
 public:
  // Whether Esc was pressed and not told yet. Nothing else that waits is run, or lost: a key press that was
  // posted comes after the work, a native one is never taken. The press itself is used up by being told.
  // Quick when asked often, since it really looks at most every 50 ms.
  bool pressed();

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool isPosted();
  void swallowTold();

  enum class State { Idle, Looking, Swallowing };
  State state_ = State::Idle;
  bool found_ = false;                                   // while looking
  bool swallowed_ = false;                               // the press, while swallowing
  QVector<std::pair<QPointer<QObject>, QEvent*>> held_;  // posted again after the look
  QElapsedTimer looked_;
};

}  // namespace lens
