// Where the rows of a list box are on the screen, and how they are drawn.
#include <QAccessible>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QTimerEvent>
#include <QToolTip>
#include <algorithm>

#include "controls/list_box.h"
#include "controls/look.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kPadding = 3;   // above the first row and below the last one
constexpr int kTextLeft = 5;  // from the border to the text
// What no screen is wide enough for is not handed to the text layout.
constexpr int kLongestShown = 4096;
constexpr int kBarDelay = 50;  // milliseconds

}  // namespace

QRect ListBox::rowPlace(int row) const {
  return QRect(0, kPadding + (row - topIndex()) * rowHeight_, viewport()->width(), rowHeight_);
}

int ListBox::rowAt(int y) const {
  if (y < kPadding) return -1;
  const int row = topIndex() + (y - kPadding) / rowHeight_;
  return row < listCount() ? row : -1;
}

int ListBox::shownRowAt(int y) const {
  const int row = rowAt(y);
  return row < topIndex() + rowsInView() ? row : -1;
}

QRect ListBox::visualRect(const QModelIndex& index) const {
  return index.isValid() ? rowPlace(index.row()) : QRect();
}

QModelIndex ListBox::indexAt(const QPoint& point) const {
  return rows_->index(shownRowAt(point.y()), 0);
}

void ListBox::scrollTo(const QModelIndex& index, ScrollHint) {
  if (!index.isValid()) return;
  const int row = index.row();
  const int last = topIndex() + rowsInView() - 1;
  if (row < topIndex())
    setTopIndex(row);
  else if (row > last)
    setTopIndex(row - rowsInView() + 1);
}

void ListBox::updateGeometries() {
  const int rowsShown = rowsInView();
  verticalScrollBar()->setPageStep(rowsShown);
  verticalScrollBar()->setSingleStep(1);
  verticalScrollBar()->setRange(0, std::max(0, listCount() - rowsShown));
  const int width = viewport()->width();
  horizontalScrollBar()->setPageStep(width);
  horizontalScrollBar()->setSingleStep(16);
  horizontalScrollBar()->setRange(0, std::max(0, extent_ - width));
}

void ListBox::scrollContentsBy(int, int) {
  viewport()->update();
}

int ListBox::horizontalOffset() const {
  return horizontalScrollBar()->value();
}

int ListBox::verticalOffset() const {
  return topIndex() * rowHeight_;
}

QRegion ListBox::visualRegionForSelection(const QItemSelection&) const {
  return viewport()->rect();
}

// Screen readers speak the row that the index comes to.
void ListBox::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (!QAccessible::isActive() || !current.isValid() || !hasFocus()) return;
  QAccessibleEvent focus(this, QAccessible::Focus);
  focus.setChild(current.row());
  QAccessible::updateAccessibility(&focus);
}

void ListBox::rowsInserted(const QModelIndex& parent, int start, int end) {
  QAbstractItemView::rowsInserted(parent, start, end);
  if (start <= topIndex() + rowsInView())
    scheduleDelayedItemsLayout();
  else if (!barTimer_.isActive())
    barTimer_.start(kBarDelay, this);
}

// Rows below the view show in the bar alone. A list that takes events between its rows would otherwise be
// painted for each of them, which costs more than the rows.
void ListBox::timerEvent(QTimerEvent* event) {
  if (event->timerId() != barTimer_.timerId()) return QAbstractItemView::timerEvent(event);
  barTimer_.stop();
  updateGeometries();
}

void ListBox::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
  QAbstractItemView::rowsAboutToBeRemoved(parent, start, end);
  scheduleDelayedItemsLayout();
}

void ListBox::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>&) {
  const QRect first = rowPlace(std::max(topLeft.row(), topIndex()));
  const QRect last = rowPlace(std::min(bottomRight.row(), topIndex() + rowsInView()));
  viewport()->update(first.united(last));
}

// The border tells which list has the focus.
bool ListBox::event(QEvent* event) {
  const bool done = QAbstractItemView::event(event);
  if (event->type() == QEvent::Paint) {
    QPainter painter(this);
    paintEdge(*this, painter);
  }
  return done;
}

// A row that is longer than its list shows itself whole beside the mouse, where there is no bar to reach its
// end.
bool ListBox::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip || sidewaysBar_) return QAbstractItemView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const int row = shownRowAt(help->pos().y());
  const QString tip = row >= 0 && isCut(row) ? plainTip(shownText(row)) : toolTip();
  QToolTip::showText(help->globalPos(), tip, viewport(), rowPlace(row));
  return true;
}

bool ListBox::isCut(int row) const {
  return kTextLeft + fontMetrics().horizontalAdvance(shownText(row)) > viewport()->width();
}

void ListBox::paintEvent(QPaintEvent* event) {
  rows_->settle();
  QPainter painter(viewport());
  painter.setClipRect(viewport()->rect().adjusted(0, kPadding, 0, -kPadding));
  const int first = std::max(topIndex(), topIndex() + (event->rect().top() - kPadding) / rowHeight_);
  const int reached = topIndex() + std::max(0, event->rect().bottom() - kPadding) / rowHeight_;
  const int last = std::min({reached, topIndex() + rowsInView() - 1, listCount() - 1});
  for (int row = first; row <= last; ++row) paintRow(painter, row);
}

void ListBox::paintRow(QPainter& painter, int row) const {
  const QRect place = rowPlace(row);
  const bool isIndex = row == listIndex();
  const bool highlighted = isChecked() ? isIndex : isRowMarked(row);
  const QPalette::ColorGroup group = !isEnabled() ? QPalette::Disabled
                                     : hasFocus() ? QPalette::Active
                                                  : QPalette::Inactive;
  if (highlighted) painter.fillRect(place, palette().brush(group, QPalette::Highlight));
  painter.setPen(palette().color(group, highlighted ? QPalette::HighlightedText : QPalette::Text));
  QRect textPlace = place.adjusted(kTextLeft - horizontalOffset(), 0, extent_, 0);
  if (isChecked()) {
    const QRect box(textPlace.left() - 2, place.top(), rowHeight_, rowHeight_);
    paintCheck(painter, row, box);
    textPlace.setLeft(box.right() + 4);
  }
  painter.drawText(textPlace, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText(row));
  if (!isIndex || !hasFocus() || (highlighted && !multiSelect_)) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  focus.rect = place;
  focus.backgroundColor = palette().color(QPalette::Base);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

void ListBox::paintCheck(QPainter& painter, int row, const QRect& place) const {
  QStyleOptionButton check;
  check.initFrom(this);
  check.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
  // Boxes without a mark are seen on a grey list, and on a dark one.
  check.palette.setColor(QPalette::Base, isDark(palette()) ? palette().color(QPalette::Light) : Qt::white);
  check.state |= isRowMarked(row) ? QStyle::State_On : QStyle::State_Off;
  const int size = std::min(13, place.height());
  check.rect =
      QRect(place.left() + (place.width() - size) / 2, place.top() + (place.height() - size) / 2, size, size);
  style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &check, &painter, this);
}

// Line ends and tabs become blanks, so that every row is one line.
QString ListBox::shownText(int row) const {
  QString shown = list(row).left(kLongestShown);
  shown.replace(u"\r\n"_s, u" "_s);
  for (QChar& unit : shown)
    if (unit < QChar(' ') || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator)
      unit = QChar(' ');
  return shown;
}

bool ListBox::isHit(int row, const QPoint& point) const {
  const int left = kTextLeft - 2 - horizontalOffset();
  return row >= 0 && point.x() >= left && point.x() < left + rowHeight_;
}

}  // namespace lens
