// The rows of a list box: texts, marks and the index. A model for the view, and all of the rules that
// do not need one.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QVector>

namespace lens {

// Compares by upper-cased code unit, one unit for one unit, so the order is the same in every locale.
bool sortsBefore(const QString& left, const QString& right);

// Rows are numbered from 0. Nothing here checks a row number except where it says so; the list box does.
class ListRows : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit ListRows(QObject* parent = nullptr) : QAbstractListModel(parent) {}

  // In a sorted list new rows wait at the end and go to their places before anything is read.
  bool isSorted() const { return sorted_; }
  void setSorted(bool sorted);
  bool hasChecks() const { return checks_; }
  void setChecks(bool checks) { checks_ = checks; }

  int count() const { return int(rows_.size()); }
  // Empty outside of the rows.
  QString text(int row);
  void setText(int row, const QString& text);
  void add(const QString& text);
  void insert(int row, const QString& text);
  void remove(int row);
  void clear();

  // -1 for none. Rows added or removed before it carry it along; its own removal takes it away.
  int indexRow() const { return index_; }
  int settledIndexRow();
  void setIndexRow(int row) { index_ = row; }

  bool isMarked(int row);
  void mark(int row, bool marked);
  // Marks exactly the rows from `first` to `last`.
  void markOnly(int first, int last);
  int markedCount() const { return markedCount_; }

  // The first row from `start` on that begins with the prefix, capitals or not; -1 for none.
  int find(const QString& prefix, int start);

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  // Puts waiting rows to their places.
  void settle();

 private:
  struct Row {
    QString text;
    bool marked = false;
  };
  void sortFrom(int firstUnsorted);

  QVector<Row> rows_;
  int settled_ = 0;  // rows before this one are in order
  int index_ = -1;
  int markedCount_ = 0;
  int markedFirst_ = 0;  // no mark stands outside of these two
  int markedLast_ = -1;
  bool sorted_ = false;
  bool checks_ = false;
};

}  // namespace lens
