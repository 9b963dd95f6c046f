// What mouse and keyboard do in a list box.
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>

#include "controls/keys.h"
#include "controls/list_box.h"
#include "notes/literals.h"

namespace lens {

void ListBox::mousePressEvent(QMouseEvent* event) {
  event->accept();
  rows_->settle();
  const QPoint point = event->position().toPoint();
  const int row = shownRowAt(point.y());
  if (event->button() == Qt::LeftButton && row >= 0) {
    Choice choice = Choice::Plain;
    if (isChecked())
      choice = isHit(row, point) ? Choice::Toggle : Choice::IndexOnly;
    else if (event->modifiers() & Qt::ShiftModifier)
      choice = Choice::Range;
    else if (event->modifiers() & Qt::ControlModifier)
      choice = Choice::Toggle;
    choose(row, choice);
  }
  mouseDown.fire(buttonNumber(event->button()), shiftState(event->modifiers()));
}

// Dragging takes the choice along, row by row.
void ListBox::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (!(event->buttons() & Qt::LeftButton)) return;
  const int row = rowAt(event->position().toPoint().y());
  if (row < 0 || row == listIndex() || isChecked()) return;
  choose(row, multiSelect_ ? Choice::Range : Choice::Plain);
}

void ListBox::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
}

void ListBox::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  const int row = shownRowAt(event->position().toPoint().y());
  if (row < 0) return;
  // The click of the first press may have changed the list under the mouse.
  if (row != listIndex()) choose(row, isChecked() ? Choice::IndexOnly : Choice::Plain);
  if (listIndex() == row) dblClick.fire();
}

// The view's own handling would take row 0 as current.
void ListBox::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  update();
  viewport()->update();
}

void ListBox::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  update();
  viewport()->update();
}

void ListBox::inputMethodEvent(QInputMethodEvent* event) {
  event->ignore();
}

void ListBox::keyPressEvent(QKeyEvent* event) {
  const int code = keyCode(*event);
  keyDown.fire(code, shiftState(event->modifiers()));
  if (moveByKey(code, event->modifiers()) || commandKey(*event)) return event->accept();
  int typed = code == key::Enter || code == key::Escape ? code : 0;
  const QString text = typedText(*event);
  if (!text.isEmpty()) typed = text.at(0).unicode();
  if (typed == 0) return event->ignore();
  keyPress.fire(typed);
  const bool useful = code == key::Enter && dblClick.isConnected() && listIndex() >= 0;
  // A held key is one double click: what it runs may take events, and would begin again inside itself.
  if (useful && typed == key::Enter && !event->isAutoRepeat()) dblClick.fire();
  if (code == key::Space && typed != 0) markByKey(event->modifiers());
  const bool letter = !text.isEmpty() && code != key::Space;
  if (letter && typed != 0) searchTyped(QString(QChar(char16_t(typed))));
  event->setAccepted(letter || code == key::Space || useful || typed == 0);
}

bool ListBox::moveByKey(int code, Qt::KeyboardModifiers modifiers) {
  if (modifiers & (Qt::AltModifier | Qt::MetaModifier)) return false;
  if ((code == key::Left || code == key::Right) && extent_ > 0) {
    horizontalScrollBar()->triggerAction(code == key::Left ? QScrollBar::SliderSingleStepSub
                                                           : QScrollBar::SliderSingleStepAdd);
    return true;
  }
  const std::optional<int> row = rowByKey(code);
  const int last = listCount() - 1;
  if (!row || last < 0) return row.has_value();
  Choice choice = Choice::Plain;
  if (multiSelect_ && (modifiers & Qt::ShiftModifier))
    choice = Choice::Range;
  else if (modifiers & Qt::ControlModifier)
    choice = Choice::IndexOnly;
  choose(std::clamp(*row, 0, last), choice);
  return true;
}

// The row that the key leads to, maybe beyond the ends; nothing for other keys.
std::optional<int> ListBox::rowByKey(int code) const {
  const int page = std::max(1, rowsInView() - 1);
  switch (code) {
    case key::Up:
    case key::Left:
      return listIndex() - 1;
    case key::Down:
    case key::Right:
      return listIndex() + 1;
    case key::PageUp:
      return listIndex() - page;
    case key::PageDown:
      return listIndex() + page;
    case key::Home:
      return 0;
    case key::End:
      return listCount() - 1;
    default:
      return std::nullopt;
  }
}

bool ListBox::commandKey(const QKeyEvent& event) {
  if (event.matches(QKeySequence::Copy)) {
    copy();
    return true;
  }
  if (event.matches(QKeySequence::SelectAll) && multiSelect_) {
    selectAll();
    return true;
  }
  if (keyCode(event) != key::Space || event.modifiers() != Qt::ControlModifier) return false;
  markByKey(event.modifiers());
  return true;
}

void ListBox::markByKey(Qt::KeyboardModifiers modifiers) {
  if (listIndex() < 0) return;
  if (isChecked() || (modifiers & Qt::ControlModifier))
    choose(listIndex(), Choice::Toggle);
  else if (multiSelect_)
    choose(listIndex(), modifiers & Qt::ShiftModifier ? Choice::Range : Choice::Plain);
}

// A letter goes to the next row that begins with it, around the end.
void ListBox::searchTyped(const QString& typed) {
  int row = find(typed, listIndex() + 1);
  if (row < 0) row = find(typed, 0);
  if (row >= 0) choose(row, isChecked() ? Choice::IndexOnly : Choice::Plain);
}

void ListBox::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  if (mouseDown.isConnected()) {
    // The mouse has told of its button already; the menu key stands for it.
    constexpr int kRightButton = 2;
    if (event->reason() == QContextMenuEvent::Keyboard)
      mouseDown.fire(kRightButton, shiftState(event->modifiers()));
    return;
  }
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(u"Copy"_s, this, [this] { copy(); })->setEnabled(listCount() > 0);
  if (multiSelect_)
    menu->addAction(u"Select all"_s, this, [this] { selectAll(); })->setEnabled(listCount() > 0);
  menu->popup(event->globalPos());
}

}  // namespace lens
