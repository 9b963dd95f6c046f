#include "controls/timer.h"

namespace lens {

Timer::Timer(QObject* parent) : QObject(parent) {
  connect(&clock_, &QTimer::timeout, this, [this] { timer.fire(); });
}

void Timer::setInterval(int milliseconds) {
  interval_ = qMax(0, milliseconds);
  restart();
}

void Timer::setEnabled(bool enabled) {
  enabled_ = enabled;
  restart();
}

void Timer::restart() {
  if (enabled_ && interval_ > 0)
    clock_.start(interval_);
  else
    clock_.stop();
}

}  // namespace lens
