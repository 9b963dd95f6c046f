// A list of rows with an index and marks: single choice, extended choice, or a check in each row.
#pragma once

#include <QAbstractItemView>
#include <QBasicTimer>
#include <optional>

#include "controls/event.h"
#include "controls/list_rows.h"

namespace lens {

// Stays fast with a million rows: all places are computed, none is stored.
//
// The index is the row of the focus; in a single list it is also the one mark. Marking a row moves the
// index to it; unmarking, adding and sorting leave it on its row.
class ListBox : public QAbstractItemView {
  Q_OBJECT
  Q_PROPERTY(bool multiSelect READ isMultiSelect WRITE setMultiSelect)
  Q_PROPERTY(bool sorted READ isSorted WRITE setSorted)
  Q_PROPERTY(bool checked READ isChecked WRITE setChecked)
  Q_PROPERTY(bool sidewaysBar READ hasSidewaysBar WRITE setSidewaysBar)

 public:
  explicit ListBox(QWidget* parent = nullptr);

  // Runs on every index or mark set in code, also to what it was, on mouse press and on arrow, Home, End
  // and Page keys; never on clearing, adding, removing, focus or the index -1.
  Event<> click;
  // The mouse's double click; also Enter on the row of the index.
  Event<> dblClick;
  // UTF-16 code of a typed character, 13 for Enter, 27 for Esc; 0 means it was used up.
  Event<int&> keyPress;
  // Key code and shift state, see keys.h.
  Event<int, int> keyDown;
  // Button (1 left, 2 right, 4 middle) and shift state, after the click of the same press. A list
  // with such a procedure has no menu of its own.
  Event<int, int> mouseDown;
  void raiseClick() const { click.raise(); }
  void raiseDblClick() const { dblClick.raise(); }

  bool isMultiSelect() const { return multiSelect_; }
  void setMultiSelect(bool multiSelect);
  bool isSorted() const { return rows_->isSorted(); }
  void setSorted(bool sorted) { rows_->setSorted(sorted); }
  bool isChecked() const { return rows_->hasChecks(); }
  void setChecked(bool checked);

  void clear();
  void addItem(const QString& text) { rows_->add(text); }
  // Both raise 5 for a row outside of the list.
  void addItem(const QString& text, int at);
  void removeItem(int row);
  int listCount() const { return rows_->count(); }
  // Empty outside of the list.
  QString list(int row) const { return rows_->text(row); }
  // Raises 381 outside of the list.
  void setList(int row, const QString& text);
  int listIndex() const { return rows_->settledIndexRow(); }
  // -1 for none; raises 380 outside of the list.
  void setListIndex(int row);
  QString text() const { return list(listIndex()); }
  // Both raise 381 outside of the list. Taking the mark from the row of a single list has no effect.
  bool selected(int row) const;
  void setSelected(int row, bool marked);
  int selCount() const;
  // The first row from `start` on that begins with the prefix, capitals or not; -1 for none.
  int find(const QString& prefix, int start = 0) const { return rows_->find(prefix, start); }
  // Marked rows, or else the row of the index, joined with CR LF.
  QString markedText() const;

  // Paints at once, without taking events; index and marks stay.
  virtual void refresh();
  int topIndex() const;
  void setTopIndex(int row);
  int rowHeight() const { return rowHeight_; }
  void setRowHeight(int pixels);
  // The width that one can scroll over, in pixels; above 0 it brings the permanent sideways bar.
  int horizontalExtent() const { return extent_; }
  void setHorizontalExtent(int pixels);
  bool hasSidewaysBar() const { return sidewaysBar_; }
  void setSidewaysBar(bool shown);

  QRect visualRect(const QModelIndex& index) const override;
  QModelIndex indexAt(const QPoint& point) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 protected:
  // What a row shows; the row itself keeps its text.
  virtual QString shownText(int row) const;

  bool event(QEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void updateGeometries() override;
  int horizontalOffset() const override;
  int verticalOffset() const override;
  bool isIndexHidden(const QModelIndex&) const override { return false; }
  // The list moves its index and keeps its marks itself.
  QModelIndex moveCursor(CursorAction, Qt::KeyboardModifiers) override { return currentIndex(); }
  void setSelection(const QRect&, QItemSelectionModel::SelectionFlags) override {}
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void rowsInserted(const QModelIndex& parent, int start, int end) override;
  void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
  void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                   const QVector<int>& roles) override;
  void timerEvent(QTimerEvent* event) override;

  // Sets the index without an event.
  void placeIndex(int row);

 private:
  enum class Choice { Plain, Toggle, Range, IndexOnly };

  void requireRow(int row, int error) const;
  void choose(int row, Choice choice);
  void showIndex();
  QRect rowPlace(int row) const;
  // Also of the rows below the view, which dragging leads to; -1 where there is none.
  int rowAt(int y) const;
  // Only whole rows are shown: what is left below them belongs to none.
  int shownRowAt(int y) const;
  int rowsInView() const;
  bool isHit(int row, const QPoint& point) const;
  bool isCut(int row) const;
  bool isRowMarked(int row) const;
  void paintRow(QPainter& painter, int row) const;
  void paintCheck(QPainter& painter, int row, const QRect& place) const;
  bool moveByKey(int code, Qt::KeyboardModifiers modifiers);
  std::optional<int> rowByKey(int code) const;
  bool commandKey(const QKeyEvent& event);
  void markByKey(Qt::KeyboardModifiers modifiers);
  void searchTyped(const QString& typed);
  void copy() const;
  void selectAll() override;

  ListRows* rows_;        // owned by this widget
  QBasicTimer barTimer_;  // runs while the bar has yet to learn of rows below the view
  int anchor_ = 0;
  int rowHeight_ = 16;
  int extent_ = 0;
  bool sidewaysBar_ = false;
  bool multiSelect_ = false;
};

}  // namespace lens
