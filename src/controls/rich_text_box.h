// A box of many lines that gives its text back exactly as it was put in, and colours parts of it.
#pragma once

#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTimer>
#include <optional>

#include "controls/event.h"
#include "controls/exact_text.h"
#include "controls/text_history.h"
#include "controls/text_looks.h"

namespace lens {

// The text, the selection and the looks are kept here; the editor's document only shows them and tells
// what the user typed. Colours and selection reach the document when it is next drawn or used, so
// thousands of changes in a row cost no more than one. Of a very long text it holds the part around what is
// in sight, which follows scrolling and the caret; a scroll bar of our own stands for the whole.
//
// Positions count UTF-16 units of the own text from 0: CR LF counts two, a lone CR or LF one, CR CR LF
// three, and each of them ends one line. Ask this class for text and selection, not the document.
class RichTextBox : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit RichTextBox(QWidget* parent = nullptr);

  // Runs when the text has become another one, by the user or by code.
  Event<> change;
  Event<> selChange;
  // Key code and shift state, see keys.h.
  Event<int, int> keyDown;

  const QString& text() const { return text_.text(); }
  // Drops all looks, also for the same text, and sets the selection to the start.
  void setText(const QString& text);
  int length() const { return text_.length(); }
  static QString upToNul(const QString& text);

  int selStart() const { return selStart_; }
  // Goes to the nearest position of the text and makes the selection empty.
  void setSelStart(int position);
  int selLength() const { return selLength_; }
  // Ends with the text at the latest. Raises 5 for a negative length.
  void setSelLength(int length);
  QString selText() const { return text().mid(selStart_, selLength_); }
  // Replaces the selection; the caret stands behind the new text.
  void setSelText(const QString& text);

  // Takes back what the user typed, put in or took out, and does it again; nothing where there is nothing.
  // Looks are no part of it. Text that code sets cannot be undone, nor what the user did before.
  void undoEdit();
  void redoEdit();

  // 0x00BBGGRR. Nothing where the selection has several colours.
  std::optional<quint32> selColor() const;
  void setSelColor(quint32 bgr);
  quint32 colorAt(int position) const;
  // Nothing where the selection has several fonts or sizes.
  std::optional<QString> selFontName() const;
  void setSelFontName(const QString& family);
  std::optional<int> selFontSize() const;
  // Points; the smallest size is 1.
  void setSelFontSize(int points);
  void setSelBold(bool bold);
  void setSelItalic(bool italic);
  void setSelUnderline(bool underline);
  void setSelStrikeThru(bool strikeThrough);

  // The line of a position, from 0; it counts line ends, not wrapped lines.
  int lineFromChar(int position) const { return text_.lineOf(position); }
  int lineStart(int line) const { return text_.lineStart(line); }
  // Whether the document holds only a part of the text, since that is long.
  bool isPart() const { return partFrom_ > 0 || partTo_ < length(); }
  // Draws at once, without taking events.
  void refresh();

 protected:
  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  void insertFromMimeData(const QMimeData* source) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // The user's edits, as the document reports them.
  void onDocumentChange(int position, int removed, int added);
  void onDocumentSettled();
  void onCursorMoved();

  void splice(int position, int removed, const QString& added);
  void replaceSelection(const QString& text);
  void putIn(const QString& text);
  void replaceByUser(const QString& text, bool recorded);
  void takeStep(int position, int removed, const QString& added);
  bool historyKey(const QKeyEvent& event);
  void addHistory(QMenu& menu);
  // The document anew, with the part around the caret where the text is long.
  void showAll();
  void showChange(int documentStart, int documentEnd, int position, int length);
  void breakEndlessWord(int position, int length);
  bool documentFits() const;
  // Brings the document up to date with text, looks and selection.
  void bringUpToDate();
  void applyLooks();
  void placeCursor();
  void setSelection(int start, int length);
  int caret() const { return caretFirst_ ? selStart_ : selStart_ + selLength_; }
  int anchor() const { return caretFirst_ ? selStart_ + selLength_ : selStart_; }
  bool caretByKey(const QKeyEvent& event);

  // The part of a long text (rich_text_part.cpp).
  bool isInPart(int position) const { return position >= partFrom_ && position <= partTo_; }
  bool selectionLeavesPart() const { return !isInPart(selStart_) || !isInPart(selStart_ + selLength_); }
  int toDocument(int position) const;
  int fromDocument(int documentPosition) const;
  bool fitsWhole() const;
  void choosePart(int around);
  void fillDocument();
  void movePart(int around, int top);
  bool isNearEnd(int top, int bottom) const;
  void followView();
  void scrollTo(int position);
  void goToCaret(const QKeyEvent* key);
  int placeOfCorner(QPoint corner) const;
  void scrollToTop(int position);
  void showWholeBar();
  void touchLooks(int from, int to);
  template <class Change>
  void changeLook(Change change);

  ExactText text_;
  TextLooks looks_;
  TextHistory history_;
  int selStart_ = 0;
  int selLength_ = 0;
  bool caretFirst_ = false;  // the caret stands at the beginning of the selection
  int partFrom_ = 0;         // what the document holds
  int partTo_ = 0;
  QScrollBar* wholeBar_;
  QTimer follow_;      // runs behind each scrolling of a part
  int looksFrom_ = 0;  // the part whose looks the document does not show yet
  int looksTo_ = 0;
  bool cursorIsOld_ = false;
  bool documentIsOld_ = false;
  bool ownWork_ = false;
  bool usersWork_ = false;  // what changes the text now can be undone
  bool edited_ = false;
};

}  // namespace lens
