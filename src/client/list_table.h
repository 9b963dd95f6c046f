// A table of whole rows: typing finds a row by any of its columns, Ctrl+C copies the marked rows.
#pragma once

#include <QAction>
#include <QElapsedTimer>
#include <QTableView>
#include <QVector>

namespace lens {

class ListTable : public QTableView {
  Q_OBJECT

 public:
  explicit ListTable(QWidget* parent = nullptr);

  // Goes to the next row in which a word of any column begins with what was typed without a pause. Looks at
  // some ten thousand rows at most, since each may have to be read first.
  void keyboardSearch(const QString& typed) override;
  // Makes columns that have a width of their own as wide as what is in sight of them, their titles included.
  void fitColumns();
  // The same for those that still have the given width, in pixels, and need more.
  void widenColumns(const QVector<int>& widths);

  // Puts the marked rows on the clipboard, the cells of each parted by tabs.
  QAction* copyAction() const { return copy_; }

 private:
  void copyRows();
  int fittingWidth(int column) const;
  bool begins(int row, const QString& word) const;

  QAction* copy_;
  QString sought_;
  QElapsedTimer typedAt_;
};

// Orders the rows of a table by a click on a header: once upwards, then downwards, then as they came. The
// signal sortIndicatorChanged of the header tells.
void offerOrder(QTableView& table);

}  // namespace lens
