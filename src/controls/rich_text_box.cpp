#include "controls/rich_text_box.h"

#include <QScopedValueRollback>
#include <algorithm>

namespace lens {

RichTextBox::RichTextBox(QWidget* parent)
    : QPlainTextEdit(parent), wholeBar_(new QScrollBar(Qt::Vertical, this)) {
  wholeBar_->hide();
  connect(wholeBar_, &QScrollBar::valueChanged, this, &RichTextBox::scrollTo);
  follow_.setSingleShot(true);
  connect(&follow_, &QTimer::timeout, this, &RichTextBox::followView);
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
  history_.clear();
  looks_.clear();
  choosePart(0);
  fillDocument();
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
  caretFirst_ = false;
  cursorIsOld_ = true;
  viewport()->update();
  selChange.raise();
}

void RichTextBox::setSelText(const QString& text) {
  const bool differs = selText() != text;
  const int end = selStart_ + int(text.size());
  history_.clear();
  replaceSelection(text);
  setSelection(end, 0);
  if (differs) change.raise();
}

void RichTextBox::replaceSelection(const QString& text) {
  const int start = selStart_;
  const bool inside = text_.isInsideLineEnd(start) || text_.isInsideLineEnd(start + selLength_);
  const bool whole = !isPart();
  const int documentStart = toDocument(start);
  const int documentEnd = toDocument(start + selLength_);
  splice(start, selLength_, text);
  if (inside || !whole || !fitsWhole())
    showAll();
  else
    showChange(documentStart, documentEnd, start, int(text.size()));
}

void RichTextBox::splice(int position, int removed, const QString& added) {
  if (usersWork_) history_.record(position, text().mid(position, removed), added);
  text_.replace(position, removed, added);
  const int addedLength = int(added.size());
  partTo_ += addedLength - removed;
  looks_.replace(position, removed, addedLength);
  if (looksTo_ > position) {
    looksTo_ = std::max(position, looksTo_ + addedLength - removed);
    looksFrom_ = std::min(looksFrom_, position);
  }
  touchLooks(position, position + addedLength);
}

void RichTextBox::showAll() {
  documentIsOld_ = false;
  choosePart(caret());
  fillDocument();
}

void RichTextBox::showChange(int documentStart, int documentEnd, int position, int length) {
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

bool RichTextBox::documentFits() const {
  return document()->characterCount() - 1 == toDocument(partTo_) &&
         document()->blockCount() - 1 == text_.lineOf(partTo_) - text_.lineOf(partFrom_);
}

void RichTextBox::refresh() {
  bringUpToDate();
  viewport()->repaint();
}

void RichTextBox::bringUpToDate() {
  if (ownWork_) return;
  // Where code has put the caret, there the user shall see it.
  if (documentIsOld_ || (cursorIsOld_ && !isInPart(caret()))) showAll();
  if (looksTo_ > looksFrom_) applyLooks();
  if (cursorIsOld_) placeCursor();
}

void RichTextBox::placeCursor() {
  QScopedValueRollback<bool> working(ownWork_, true);
  cursorIsOld_ = false;
  QTextCursor cursor(document());
  cursor.setPosition(toDocument(anchor()));
  cursor.setPosition(toDocument(caret()), QTextCursor::KeepAnchor);
  setTextCursor(cursor);
}

}  // namespace lens
