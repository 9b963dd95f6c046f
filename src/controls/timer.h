// A clock that ticks while it is enabled.
#pragma once

#include <QTimer>

#include "controls/event.h"

namespace lens {

class Timer : public QObject {
  Q_OBJECT
  Q_PROPERTY(int interval READ interval WRITE setInterval)
  Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled)

 public:
  explicit Timer(QObject* parent = nullptr);

  Event<> timer;

  // Milliseconds; 0 stops the clock as if it were disabled.
  int interval() const { return interval_; }
  void setInterval(int milliseconds);
  bool isEnabled() const { return enabled_; }
  void setEnabled(bool enabled);

 private:
  void restart();

  QTimer clock_;
  int interval_ = 0;
  bool enabled_ = true;
};

}  // namespace lens
