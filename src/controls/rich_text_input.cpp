// What the user does in a rich text box: keys, the clipboard, dragging, and what the document tells of them.
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <algorithm>

#include "controls/keys.h"
#include "controls/look.h"
#include "notes/literals.h"

namespace lens {
namespace {

QChar shownAt(const QTextDocument& document, int place) {
  const QChar character = document.characterAt(place);
  return character == QChar::ParagraphSeparator ? QChar(u'\n') : character;
}

bool isLineEnd(QChar character) {
  return character == QChar(u'\n') || character == QChar::ParagraphSeparator ||
         character == QChar::LineSeparator;
}

// What the user typed, with the line ends of the own text.
QString typedPart(const QTextDocument& document, int from, int to) {
  QString typed;
  for (int place = from; place < to; ++place) {
    const QChar character = document.characterAt(place);
    if (isLineEnd(character))
      typed += u"\r\n"_s;
    else
      typed += character;
  }
  return typed;
}

// What comes in from elsewhere, with the line ends of the own text.
QString withOwnLineEnds(const QString& text) {
  QString result;
  result.reserve(text.size());
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar character = text[i];
    if (character == QChar(u'\r') || isLineEnd(character))
      result += u"\r\n"_s;
    else
      result += character;
    if (character == QChar(u'\r') && i + 1 < text.size() && text[i + 1] == QChar(u'\n')) ++i;
  }
  return result;
}

// Tab is a character of the text, so the keyboard leaves the box with Ctrl+Tab.
bool leavesBox(const QKeyEvent& event) {
  return (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) &&
         (event.modifiers() & Qt::ControlModifier);
}

}  // namespace

void RichTextBox::onDocumentChange(int position, int removed, int added) {
  Q_UNUSED(added);
  if (ownWork_ || documentIsOld_) return;
  const int oldLength = toDocument(partTo_);
  const int newLength = document()->characterCount() - 1;
  int start = std::min(position, oldLength);
  int oldEnd = std::min(start + removed, oldLength);
  int newEnd = newLength - (oldLength - oldEnd);
  // A selection that is taken out goes as a whole, also what the document does not hold of it.
  const int selectionFrom = toDocument(selStart_), selectionTo = toDocument(selStart_ + selLength_);
  const bool wide = selectionLeavesPart() && start <= selectionFrom && oldEnd >= selectionTo;
  const int firstKept = wide ? selectionFrom : oldEnd, lastKept = wide ? selectionTo : start;
  const int ownStart = fromDocument(start);
  const QString old = text_.shown(ownStart, fromDocument(oldEnd) - ownStart);
  // The report may cover more than was typed; what is unchanged keeps its own line ends.
  const auto unit = [this](int place) { return shownAt(*document(), place); };
  const int first = start;
  while (start < oldEnd && start < newEnd && start < firstKept && old.at(start - first) == unit(start))
    ++start;
  while (oldEnd > start && newEnd > start && oldEnd > lastKept &&
         old.at(oldEnd - 1 - first) == unit(newEnd - 1))
    --oldEnd, --newEnd;
  if (oldEnd == start && newEnd <= start && !wide) return;
  const QString typed = typedPart(*document(), start, newEnd);
  const int from = wide && start == selectionFrom ? selStart_ : fromDocument(start);
  const int to = wide && oldEnd == selectionTo ? selStart_ + selLength_ : fromDocument(oldEnd);
  {
    QScopedValueRollback<bool> work(usersWork_, true);
    splice(from, to - from, typed);
  }
  if (!wide) breakEndlessWord(from, int(typed.size()));
  edited_ = true;
  documentIsOld_ = wide || !documentFits();
  selStart_ = from + int(typed.size());
  selLength_ = 0;
  caretFirst_ = false;
}

void RichTextBox::onDocumentSettled() {
  if (!edited_) return;
  edited_ = false;
  viewport()->update();
  change.fire();
  selChange.fire();
}

void RichTextBox::onCursorMoved() {
  if (ownWork_ || cursorIsOld_ || documentIsOld_) return;
  const QTextCursor cursor = textCursor();
  const int end = document()->characterCount() - 1;
  // An end of the selection that did not move may stand where the document has no place for it.
  int from = cursor.anchor() == toDocument(anchor()) ? anchor() : fromDocument(cursor.anchor());
  int to = cursor.position() == toDocument(caret()) ? caret() : fromDocument(cursor.position());
  // All that the document holds is all of the text: nothing else selects to both its ends.
  if (isPart() && cursor.anchor() == 0 && cursor.position() == end) from = 0, to = length();
  caretFirst_ = to < from;
  const int start = std::min(from, to), size = std::abs(to - from);
  if (start == selStart_ && size == selLength_) return;
  selStart_ = start;
  selLength_ = size;
  selChange.fire();
}

// As the user does it: nobody waits for a failure.
void RichTextBox::putIn(const QString& text) {
  if (text.isEmpty() && selLength_ == 0) return;
  history_.breakStep();
  replaceByUser(text, true);
}

void RichTextBox::replaceByUser(const QString& text, bool recorded) {
  const int end = selStart_ + int(text.size());
  {
    QScopedValueRollback<bool> work(usersWork_, recorded);
    replaceSelection(text);
  }
  selStart_ = end;
  selLength_ = 0;
  caretFirst_ = false;
  cursorIsOld_ = true;
  bringUpToDate();
  ensureCursorVisible();
  change.fire();
  selChange.fire();
}

void RichTextBox::undoEdit() {
  for (const TextHistory::Step& step : history_.undo())
    takeStep(step.position, int(step.added.size()), step.removed);
}

void RichTextBox::redoEdit() {
  for (const TextHistory::Step& step : history_.redo())
    takeStep(step.position, int(step.removed.size()), step.added);
}

void RichTextBox::takeStep(int position, int removed, const QString& added) {
  bringUpToDate();
  selStart_ = position;
  selLength_ = removed;
  replaceByUser(added, false);
}

bool RichTextBox::historyKey(const QKeyEvent& event) {
  const bool redoes = event.modifiers() == Qt::ControlModifier && event.key() == Qt::Key_Y;
  if (redoes || const_cast<QKeyEvent&>(event).matches(QKeySequence::Redo))
    redoEdit();
  else if (const_cast<QKeyEvent&>(event).matches(QKeySequence::Undo))
    undoEdit();
  else
    return false;
  return true;
}

bool RichTextBox::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::InputMethod:
      goToCaret(event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr);
      bringUpToDate();
      break;
    case QEvent::ShortcutOverride:
    case QEvent::FocusIn:
      bringUpToDate();
      break;
    default:
      if (tellsOfColours(*event)) touchLooks(partFrom_, partTo_);
      break;
  }
  const bool done = QPlainTextEdit::event(event);
  if (event->type() == QEvent::Paint) {
    QPainter painter(this);
    paintEdge(*this, painter);
  }
  return done;
}

bool RichTextBox::viewportEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::Paint:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
      bringUpToDate();
      break;
    default:
      break;
  }
  return QPlainTextEdit::viewportEvent(event);
}

void RichTextBox::keyPressEvent(QKeyEvent* event) {
  keyDown.fire(keyCode(*event), shiftState(event->modifiers()));
  if (leavesBox(*event)) {  // the editor itself refuses to
    QAbstractScrollArea::focusNextPrevChild(event->key() == Qt::Key_Tab &&
                                            !(event->modifiers() & Qt::ShiftModifier));
    return event->accept();
  }
  bringUpToDate();
  if (!isReadOnly() && historyKey(*event)) return event->accept();
  if (isPart() && caretByKey(*event)) return event->accept();
  QPlainTextEdit::keyPressEvent(event);
  if (documentIsOld_) bringUpToDate();
}

// To an end of the text that the document may not hold.
bool RichTextBox::caretByKey(const QKeyEvent& event) {
  const auto is = [&](QKeySequence::StandardKey key) { return const_cast<QKeyEvent&>(event).matches(key); };
  const bool start = is(QKeySequence::MoveToStartOfDocument) || is(QKeySequence::SelectStartOfDocument);
  const bool end = is(QKeySequence::MoveToEndOfDocument) || is(QKeySequence::SelectEndOfDocument);
  if (!start && !end) return false;
  const bool selects = is(QKeySequence::SelectStartOfDocument) || is(QKeySequence::SelectEndOfDocument);
  const int to = start ? 0 : length(), from = selects ? anchor() : to;
  selStart_ = std::min(from, to);
  selLength_ = std::abs(to - from);
  caretFirst_ = to < from;
  cursorIsOld_ = true;
  bringUpToDate();
  selChange.fire();
  return true;
}

void RichTextBox::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = createStandardContextMenu(event->pos());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (!isReadOnly()) addHistory(*menu);
  menu->popup(event->globalPos());
}

// Above what the editor offers itself.
void RichTextBox::addHistory(QMenu& menu) {
  auto* undo = new QAction(tr("&Undo") + u"\tCtrl+Z", &menu);
  auto* redo = new QAction(tr("&Redo") + u"\tCtrl+Y", &menu);
  undo->setEnabled(history_.canUndo());
  redo->setEnabled(history_.canRedo());
  connect(undo, &QAction::triggered, this, &RichTextBox::undoEdit);
  connect(redo, &QAction::triggered, this, &RichTextBox::redoEdit);
  QAction* const first = menu.actions().value(0);
  menu.insertActions(first, {undo, redo});
  menu.insertSeparator(first);
}

QMimeData* RichTextBox::createMimeDataFromSelection() const {
  auto* data = new QMimeData;
  data->setText(selText());
  return data;
}

void RichTextBox::insertFromMimeData(const QMimeData* source) {
  if (!source->hasText() || isReadOnly()) return;
  bringUpToDate();
  putIn(withOwnLineEnds(source->text()));
}

// The editor would take out and put in as one edit, and report all that lies between as changed.
void RichTextBox::dropEvent(QDropEvent* event) {
  QDragLeaveEvent leaving;  // ends the feedback of the editor
  dragLeaveEvent(&leaving);
  int target = fromDocument(cursorForPosition(event->position().toPoint()).position());
  const bool moved = event->source() == viewport() && event->dropAction() == Qt::MoveAction;
  const bool onItself = moved && target >= selStart_ && target <= selStart_ + selLength_;
  if (isReadOnly() || !event->mimeData()->hasText() || onItself) return event->ignore();
  caretFirst_ = false;
  if (moved) {
    if (target > selStart_) target -= selLength_;
    history_.breakStep();
    QScopedValueRollback<bool> work(usersWork_, true);
    replaceSelection(QString());
  }
  selStart_ = target;
  selLength_ = 0;
  putIn(withOwnLineEnds(event->mimeData()->text()));
  if (moved) history_.joinLast();
  event->acceptProposedAction();
}

}  // namespace lens
