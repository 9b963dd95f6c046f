// The rows of the document table: documents with a few facts of each, or a view with its own columns. A note
// is read when its row comes into sight.
#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QVector>
#include <functional>
#include <memory>

#include "client/row_order.h"
#include "client/view_rows.h"
#include "embedded/store/database.h"
#include "host/regional.h"

namespace lens {

class DocumentModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  // Of documents that no view shows.
  enum Column { Form, Subject, Modified, Id, ColumnCount };

  DocumentModel(const Regional& regional, QObject* parent);

  // Shows other rows; null and empty for none.
  void show(std::shared_ptr<Database> database, QVector<NoteId> noteIds);
  void show(std::unique_ptr<ViewRows> view);
  // Shows the rows in another order, or some of them; categories have a place in the list's own order only.
  // What is shown anew comes in its own order. Reads every row; false, and all stays as it was, when that was
  // interrupted.
  bool arrange(const RowArrangement& wanted, const std::function<bool()>& interrupted);
  // Null for a category.
  const QVector<NoteId>& noteIds() const { return noteIds_; }
  NoteId noteId(int row) const { return noteIds_.value(row); }
  // Rows that are no categories, also those that are not shown.
  int documentCount() const { return documentCount_; }
  int shownDocuments() const { return int(noteIds_.size() - noteIds_.count(NoteId())); }
  // In characters; 0 for the column that takes what is left.
  QVector<int> columnWidths() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  // How many rows were read since show().
  int notesRead() const { return notesRead_; }

 private:
  void take(std::shared_ptr<Database> database, std::unique_ptr<ViewRows> view, QVector<NoteId> noteIds);
  // By the row of the list, whatever is shown of it.
  const QStringList& texts(int row) const;
  QStringList read(int row) const;
  RowKey key(int row, int column) const;
  int sourceRow(int shown) const { return isArranged_ ? order_[shown] : shown; }
  QStringList readNote(NoteId noteId) const;

  Regional regional_;
  std::shared_ptr<Database> database_;
  std::unique_ptr<ViewRows> view_;    // null where no view is shown
  QVector<NoteId> allIds_, noteIds_;  // of the list, and as they are shown
  QVector<int> order_;                // rows of the list as they are shown, where they are arranged
  bool isArranged_ = false;
  int documentCount_ = 0;
  mutable QCache<int, QStringList> cache_;  // by row
  mutable int notesRead_ = 0;
};

}  // namespace lens
