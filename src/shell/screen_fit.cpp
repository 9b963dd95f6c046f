#include "shell/screen_fit.h"

#include <QScreen>
#include <QTimer>
#include <utility>

namespace lens {
namespace {

constexpr double kSmallestScale = 0.8;
// What title bar and borders take of usual desktops; how much it really is shows only when the window is
// there.
constexpr int kFrameHeight = 40;
constexpr int kLooks = 20;
constexpr int kLookEveryMs = 50;

void lookAgain(int looks, QWidget& window, WindowLayout& layout, const std::function<void()>& resized) {
  if (looks == 0) return;
  QTimer::singleShot(kLookEveryMs, &window, [looks, &window, &layout, resized] {
    const int before = layout.recordedHeight();
    layout.fitRecordToHeight();
    if (layout.recordedHeight() != before) resized();
    lookAgain(looks - 1, window, layout, resized);
  });
}

}  // namespace

void fitDesignToScreen(QWidget& window) {
  const int free = window.screen()->availableSize().height() - kFrameHeight;
  const double scale = qMax(double(free) / window.height(), kSmallestScale);
  if (scale >= 1) return;
  for (QWidget* control : layoutControls(window)) {
    const QRect place = control->geometry();
    control->setGeometry(place.x(), qRound(place.y() * scale), place.width(), qRound(place.height() * scale));
  }
  window.resize(window.width(), qRound(window.height() * scale));
}

void fitRecordToDesktop(QWidget& window, WindowLayout& layout, std::function<void()> resized) {
  lookAgain(kLooks, window, layout, resized);
}

}  // namespace lens
