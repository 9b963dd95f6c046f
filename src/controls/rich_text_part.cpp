// The part of a long text that the document of a rich text box holds: a document costs many times its text,
// and lays out a line as a whole.
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>

#include "controls/rich_text_box.h"

namespace lens {
namespace {

// Up to here a text is shown whole.
constexpr int kMostWhole = 1'000'000, kMostLinesWhole = 100'000;
// Many screens full.
constexpr int kPart = 200'000, kLinesInPart = 20'000;
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

}  // namespace

// Before the document lays out a part that has changed.
void RichTextBox::breakEndlessWord(int position, int length) {
  if (wordWrapMode() == QTextOption::WrapAnywhere) return;
  // The word may have been there in part.
  const int from = std::max(0, position - int(kEndlessWord));
  if (hasEndlessWord(QStringView(text()).mid(from, position - from + length + kEndlessWord + 1)))
    setWordWrapMode(QTextOption::WrapAnywhere);
}

int RichTextBox::toDocument(int position) const {
  return text_.toDocument(std::clamp(position, partFrom_, partTo_)) - text_.toDocument(partFrom_);
}

int RichTextBox::fromDocument(int documentPosition) const {
  return text_.fromDocument(documentPosition + text_.toDocument(partFrom_));
}

bool RichTextBox::fitsWhole() const {
  return length() <= kMostWhole && text_.lineEndCount() <= kMostLinesWhole;
}

// Ends between characters and line ends, with the place in the middle where the text goes on to both sides.
void RichTextBox::choosePart(int around) {
  partFrom_ = 0;
  partTo_ = length();
  if (fitsWhole()) return;
  around = std::min(around, length());
  const int line = text_.lineOf(around);
  const int from = std::max(around - kPart / 2, text_.lineStart(line - kLinesInPart / 2));
  const int to = std::min(std::max(around, kPart / 2) + kPart / 2, text_.lineStart(line + kLinesInPart / 2));
  const auto between = [this](int position) {
    const int place = text_.fromDocument(text_.toDocument(std::clamp(position, 0, length())));
    const bool inPair = place > 0 && place < length() && text()[place].isLowSurrogate();
    return inPair ? place - 1 : place;
  };
  partFrom_ = between(from);
  partTo_ = to >= length() ? length() : between(to);
}

void RichTextBox::fillDocument() {
  QScopedValueRollback<bool> working(ownWork_, true);
  documentIsOld_ = false;
  const QString shown = text_.shown(partFrom_, partTo_ - partFrom_);
  const bool anywhere = hasEndlessWord(shown);
  // The old text is laid out once more on its way out, so it must not meet the slow mode either.
  if (anywhere) setWordWrapMode(QTextOption::WrapAnywhere);
  setPlainText(shown);
  if (!anywhere) setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  cursorIsOld_ = true;
  looksFrom_ = looksTo_ = 0;
  touchLooks(partFrom_, partTo_);
  if (isPart()) follow_.start(0);
  if (wholeBar_->isHidden() == !isPart()) return;
  setVerticalScrollBarPolicy(isPart() ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
  setViewportMargins(0, 0, isPart() ? wholeBar_->sizeHint().width() : 0, 0);
  wholeBar_->setVisible(isPart());
}

// Another part, with the line of the position at the top of the view. Selection and caret stay where they are
// in the text.
void RichTextBox::movePart(int around, int top) {
  if (ownWork_ || documentIsOld_) return;
  const int from = partFrom_, to = partTo_;
  choosePart(around);
  if (partFrom_ != from || partTo_ != to) fillDocument();
  if (looksTo_ > looksFrom_) applyLooks();
  if (cursorIsOld_) placeCursor();
  scrollToTop(top);
}

// Who scrolls near to an end of the part finds the text going on.
bool RichTextBox::isNearEnd(int top, int bottom) const {
  const int margin = (partTo_ - partFrom_) / 8;
  return (partFrom_ > 0 && top < partFrom_ + margin) || (partTo_ < length() && bottom > partTo_ - margin);
}

void RichTextBox::followView() {
  if (!isPart() || documentIsOld_) return;
  const int top = placeOfCorner({0, 0});
  if (isNearEnd(top, placeOfCorner(viewport()->rect().bottomRight()))) movePart(top, top);
  showWholeBar();
}

// As the bar for the whole text says.
void RichTextBox::scrollTo(int position) {
  if (isNearEnd(position, position))
    movePart(position, position);
  else
    scrollToTop(position);
}

void RichTextBox::scrollContentsBy(int dx, int dy) {
  QPlainTextEdit::scrollContentsBy(dx, dy);
  if (isPart()) follow_.start(0);
}

// A key means the caret, wherever the view is; one that only goes with others means nothing yet.
void RichTextBox::goToCaret(const QKeyEvent* key) {
  if (!isPart()) return;
  const bool modifier = key && (key->key() == Qt::Key_Control || key->key() == Qt::Key_Shift ||
                                key->key() == Qt::Key_Alt || key->key() == Qt::Key_Meta);
  if (modifier) return;
  if (isInPart(caret()))
    followView();
  else
    cursorIsOld_ = true;
}

int RichTextBox::placeOfCorner(QPoint corner) const {
  return fromDocument(cursorForPosition(corner).position());
}

// The bar of the editor counts lines as they are laid out; those above it does not know yet count one each.
void RichTextBox::scrollToTop(int position) {
  QScopedValueRollback<bool> working(ownWork_, true);
  const int place = toDocument(position);
  const QTextBlock block = document()->findBlock(place);
  document()->documentLayout()->blockBoundingRect(block);
  const QTextLine line = block.layout()->lineForTextPosition(place - block.position());
  verticalScrollBar()->setValue(block.firstLineNumber() + (line.isValid() ? line.lineNumber() : 0));
}

void RichTextBox::showWholeBar() {
  const QSignalBlocker quiet(wholeBar_);
  const int top = placeOfCorner({0, 0}), bottom = placeOfCorner(viewport()->rect().bottomRight());
  const int page = std::max(1, bottom - top);
  wholeBar_->setRange(0, std::max(0, length() - page));
  wholeBar_->setPageStep(page);
  wholeBar_->setSingleStep(std::max(1, page / 10));
  if (!wholeBar_->isSliderDown()) wholeBar_->setValue(top);
}

void RichTextBox::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const int width = wholeBar_->sizeHint().width();
  wholeBar_->setGeometry(rect().right() + 1 - frameWidth() - width, frameWidth(), width,
                         height() - 2 * frameWidth());
  if (isPart()) follow_.start(0);
}

}  // namespace lens
