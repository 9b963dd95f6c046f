#include "controls/rich_text_box.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <algorithm>

#include "controls/keys.h"
#include "controls/look.h"
#include "notes/literals.h"

namespace lens {
namespace {

// The common value of all runs of the selection, or of the character before an empty one.
template <class Value, class Read>
std::optional<Value> commonValue(const TextLooks& looks, int start, int length, Read read) {
  if (length == 0) return read(looks.at(std::max(0, start - 1)));
  std::optional<Value> common;
  bool differs = false;
  looks.forEach(start, start + length, [&](int, int, const TextLook& look) {
    const Value value = read(look);
    differs = differs || (common && *common != value);
    common = value;
  });
  return differs ? std::nullopt : common;
}

quint32 bgrOf(const QColor& colour) {
  return quint32(colour.red()) | quint32(colour.green()) << 8 | quint32(colour.blue()) << 16;
}

constexpr qsizetype kEndlessWord = 10'000;

// The toolkit looks through a whole word for each line that it breaks the word into: an encoded file in one
// line would take minutes.
bool hasEndlessWord(QStringView text) {
  qsizetype start = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (!text[i].isSpace()) continue;
    if (i - start > kEndlessWord) return true;
    start = i + 1;
  }
  return text.size() - start > kEndlessWord;
}

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

RichTextBox::RichTextBox(QWidget* parent) : QPlainTextEdit(parent) {
  setUndoRedoEnabled(false);
  setLineWrapMode(WidgetWidth);
  setTabChangesFocus(false);
  document()->setDocumentMargin(4);
  connect(document(), &QTextDocument::contentsChange, this, &RichTextBox::onDocumentChange);
  connect(document(), &QTextDocument::contentsChanged, this, &RichTextBox::onDocumentSettled);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &RichTextBox::onCursorMoved);
  connect(this, &QPlainTextEdit::selectionChanged, this, &RichTextBox::onCursorMoved);
}

void RichTextBox::setText(const QString& text) {
  const bool differs = text != text_.text();
  if (differs) text_.setText(text);
  looks_.clear();
  showAll();
  setSelection(0, 0);
  if (differs) change.raise();
}

QString RichTextBox::upToNul(const QString& text) {
  const qsizetype nul = text.indexOf(QChar(u'\0'));
  return nul < 0 ? text : text.left(nul);
}

void RichTextBox::setSelStart(int position) {
  setSelection(std::clamp(position, 0, length()), 0);
}

void RichTextBox::setSelLength(int length) {
  if (length < 0) throw RuntimeError(err::InvalidCall);
  setSelection(selStart_, std::min(length, text_.length() - selStart_));
}

void RichTextBox::setSelection(int start, int length) {
  if (selStart_ == start && selLength_ == length) return;
  selStart_ = start;
  selLength_ = length;
  cursorIsOld_ = true;
  viewport()->update();
  selChange.raise();
}

void RichTextBox::setSelText(const QString& text) {
  const bool differs = selText() != text;
  const int end = selStart_ + int(text.size());
  replaceSelection(text);
  setSelection(end, 0);
  if (differs) change.raise();
}

void RichTextBox::replaceSelection(const QString& text) {
  const int start = selStart_;
  const bool inside = text_.isInsideLineEnd(start) || text_.isInsideLineEnd(start + selLength_);
  const int documentStart = text_.toDocument(start);
  const int documentEnd = text_.toDocument(start + selLength_);
  splice(start, selLength_, text);
  if (inside)
    showAll();
  else
    showPart(documentStart, documentEnd, start, int(text.size()));
}

// As the user does it: nobody waits for a failure.
void RichTextBox::putIn(const QString& text) {
  if (text.isEmpty() && selLength_ == 0) return;
  const int end = selStart_ + int(text.size());
  replaceSelection(text);
  selStart_ = end;
  selLength_ = 0;
  cursorIsOld_ = true;
  bringUpToDate();
  ensureCursorVisible();
  change.fire();
  selChange.fire();
}

void RichTextBox::splice(int position, int removed, const QString& added) {
  text_.replace(position, removed, added);
  const int addedLength = int(added.size());
  looks_.replace(position, removed, addedLength);
  if (looksTo_ > position) {
    looksTo_ = std::max(position, looksTo_ + addedLength - removed);
    looksFrom_ = std::min(looksFrom_, position);
  }
  touchLooks(position, position + addedLength);
}

void RichTextBox::showAll() {
  QScopedValueRollback<bool> working(ownWork_, true);
  documentIsOld_ = false;
  const QString shown = text_.shown(0, length());
  const bool anywhere = hasEndlessWord(shown);
  // The old text is laid out once more on its way out, so it must not meet the slow mode either.
  if (anywhere) setWordWrapMode(QTextOption::WrapAnywhere);
  setPlainText(shown);
  if (!anywhere) setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  cursorIsOld_ = true;
  looksFrom_ = looksTo_ = 0;
  touchLooks(0, length());
}

void RichTextBox::showPart(int documentStart, int documentEnd, int position, int length) {
  breakEndlessWord(position, length);
  {
    QScopedValueRollback<bool> working(ownWork_, true);
    QTextCursor cursor(document());
    cursor.setPosition(documentStart);
    cursor.setPosition(documentEnd, QTextCursor::KeepAnchor);
    cursor.insertText(text_.shown(position, length));
    cursorIsOld_ = true;
  }
  // A CR and an LF may have met, which makes one line end of two.
  if (!documentFits()) showAll();
}

// Before the document lays out a part that has changed.
void RichTextBox::breakEndlessWord(int position, int length) {
  if (wordWrapMode() == QTextOption::WrapAnywhere) return;
  // The word may have been there in part.
  const int from = std::max(0, position - int(kEndlessWord));
  if (hasEndlessWord(QStringView(text()).mid(from, position - from + length + kEndlessWord + 1)))
    setWordWrapMode(QTextOption::WrapAnywhere);
}

bool RichTextBox::documentFits() const {
  return document()->characterCount() - 1 == text_.documentLength() &&
         document()->blockCount() - 1 == text_.lineEndCount();
}

void RichTextBox::onDocumentChange(int position, int removed, int added) {
  Q_UNUSED(added);
  if (ownWork_ || documentIsOld_) return;
  const int oldLength = text_.documentLength();
  const int newLength = document()->characterCount() - 1;
  int start = std::min(position, oldLength);
  int oldEnd = std::min(start + removed, oldLength);
  int newEnd = newLength - (oldLength - oldEnd);
  const int ownStart = text_.fromDocument(start);
  const QString old = text_.shown(ownStart, text_.fromDocument(oldEnd) - ownStart);
  // The report may cover more than was typed; what is unchanged keeps its own line ends.
  const auto unit = [this](int place) { return shownAt(*document(), place); };
  const int first = start;
  while (start < oldEnd && start < newEnd && old.at(start - first) == unit(start)) ++start;
  while (oldEnd > start && newEnd > start && old.at(oldEnd - 1 - first) == unit(newEnd - 1))
    --oldEnd, --newEnd;
  if (oldEnd == start && newEnd <= start) return;
  const QString typed = typedPart(*document(), start, newEnd);
  const int from = text_.fromDocument(start);
  splice(from, text_.fromDocument(oldEnd) - from, typed);
  breakEndlessWord(from, int(typed.size()));
  edited_ = true;
  documentIsOld_ = !documentFits();
  selStart_ = from + int(typed.size());
  selLength_ = 0;
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
  const int start = text_.fromDocument(cursor.selectionStart());
  const int length = text_.fromDocument(cursor.selectionEnd()) - start;
  if (start == selStart_ && length == selLength_) return;
  selStart_ = start;
  selLength_ = length;
  selChange.fire();
}

void RichTextBox::refresh() {
  bringUpToDate();
  viewport()->repaint();
}

void RichTextBox::bringUpToDate() {
  if (ownWork_) return;
  if (documentIsOld_) showAll();
  if (looksTo_ > looksFrom_) applyLooks();
  if (cursorIsOld_) placeCursor();
}

void RichTextBox::placeCursor() {
  QScopedValueRollback<bool> working(ownWork_, true);
  cursorIsOld_ = false;
  QTextCursor cursor(document());
  cursor.setPosition(text_.toDocument(selStart_));
  cursor.setPosition(text_.toDocument(selStart_ + selLength_), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

bool RichTextBox::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::FocusIn:
      bringUpToDate();
      break;
    default:
      break;
  }
  return QPlainTextEdit::event(event);
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
  QPlainTextEdit::keyPressEvent(event);
  if (documentIsOld_) bringUpToDate();
}

void RichTextBox::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = createStandardContextMenu(event->pos());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(event->globalPos());
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
  int target = text_.fromDocument(cursorForPosition(event->position().toPoint()).position());
  const bool moved = event->source() == viewport() && event->dropAction() == Qt::MoveAction;
  const bool onItself = moved && target >= selStart_ && target <= selStart_ + selLength_;
  if (isReadOnly() || !event->mimeData()->hasText() || onItself) return event->ignore();
  if (moved) {
    if (target > selStart_) target -= selLength_;
    replaceSelection(QString());
  }
  selStart_ = target;
  selLength_ = 0;
  putIn(withOwnLineEnds(event->mimeData()->text()));
  event->acceptProposedAction();
}

std::optional<quint32> RichTextBox::selColor() const {
  const quint32 inherited = bgrOf(palette().color(QPalette::Active, QPalette::Text));
  return commonValue<quint32>(looks_, selStart_, selLength_,
                              [&](const TextLook& look) { return look.colour.value_or(inherited); });
}

quint32 RichTextBox::colorAt(int position) const {
  const quint32 inherited = bgrOf(palette().color(QPalette::Active, QPalette::Text));
  return looks_.at(std::max(0, position)).colour.value_or(inherited);
}

std::optional<QString> RichTextBox::selFontName() const {
  return commonValue<QString>(looks_, selStart_, selLength_,
                              [&](const TextLook& look) { return look.fontName.value_or(font().family()); });
}

std::optional<int> RichTextBox::selFontSize() const {
  return commonValue<int>(looks_, selStart_, selLength_,
                          [&](const TextLook& look) { return look.fontSize.value_or(font().pointSize()); });
}

}  // namespace lens
