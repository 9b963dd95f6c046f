#include "shell/screen_fit.h"

#include <QScreen>
#include <QTimer>
#include <utility>

#include "controls/frame.h"
#include "controls/label.h"

namespace lens {
namespace {

// How much the frame really takes shows only when the window is there.
constexpr QSize kUsualFrame(16, 40);
constexpr QSize kSmallest(800, 500);
constexpr int kLooks = 20;
constexpr int kLookEveryMs = 50;

// What a line of text in 8 points takes, and what the design leaves to the title of a frame and above a
// frame.
constexpr int kTextHeight = 14;
constexpr int kTitleHeight = 16;
constexpr int kGap = 8;

struct Shrinking {
  double across, down;

  // Shrinks by the edges, so that what stands in a line still does. Text does not shrink: where its place
  // becomes too low, it takes what is free above.
  QRect placeOf(const QWidget& control, const QRect& design) const {
    const QPoint end = design.topLeft() + QPoint(design.width(), design.height());
    const QPoint from(qRound(design.x() * across), qRound(design.y() * down));
    const QPoint to(qRound(end.x() * across), qRound(end.y() * down));
    QRect place(from, QSize(to.x() - from.x(), to.y() - from.y()));
    if (qobject_cast<const Label*>(&control))
      place.setTop(qMin(place.top(), to.y() - qMin(kTextHeight, design.height())));
    if (qobject_cast<const Frame*>(&control))
      place.setTop(place.top() - qRound(qMin(kTitleHeight * (1 - down), kGap * down)));
    return place;
  }
};

int fitted(int design, int room, int smallest) {
  return qMin(design, qMax(room, smallest));
}

void moveOntoScreen(QWidget& window) {
  if (window.isMaximized() || window.isMinimized() || window.isFullScreen()) return;
  const QRect frame = window.frameGeometry();
  const QRect inside = movedInside(frame, window.screen()->availableGeometry());
  if (inside != frame) window.move(inside.topLeft());
}

void lookAgain(int looks, QWidget& window, WindowLayout& layout, const std::function<void()>& resized) {
  if (looks == 0) return;
  QTimer::singleShot(kLookEveryMs, &window, [looks, &window, &layout, resized] {
    const int before = layout.recordedHeight();
    layout.fitRecordToHeight();
    if (layout.recordedHeight() != before) resized();
    moveOntoScreen(window);
    lookAgain(looks - 1, window, layout, resized);
  });
}

}  // namespace

QSize roomInside(const QScreen& screen) {
  return screen.availableSize() - kUsualFrame;
}

void fitDesign(QWidget& window, QSize room) {
  const QSize design = window.size();
  const QSize size(fitted(design.width(), room.width(), kSmallest.width()),
                   fitted(design.height(), room.height(), kSmallest.height()));
  if (size == design) return;
  const Shrinking shrinking{double(size.width()) / design.width(), double(size.height()) / design.height()};
  // As they stand in the window, before any frame is moved.
  QVector<std::pair<QWidget*, QRect>> places;
  for (QWidget* control : layoutControls(window))
    places.push_back({control, QRect(control->mapTo(&window, QPoint()), control->size())});
  for (const auto& [control, place] : std::as_const(places))
    control->setGeometry(
        shrinking.placeOf(*control, place).translated(-control->parentWidget()->mapTo(&window, QPoint())));
  window.resize(size);
}

void fitDesignToScreen(QWidget& window) {
  fitDesign(window, roomInside(*window.screen()));
}

void settleOnDesktop(QWidget& window, WindowLayout& layout, const std::function<void()>& resized) {
  lookAgain(kLooks, window, layout, resized);
}

QRect movedInside(QRect place, const QRect& area) {
  if (place.right() > area.right()) place.moveRight(area.right());
  if (place.bottom() > area.bottom()) place.moveBottom(area.bottom());
  if (place.left() < area.left()) place.moveLeft(area.left());
  if (place.top() < area.top()) place.moveTop(area.top());
  return place;
}

}  // namespace lens
