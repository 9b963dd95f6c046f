// The rows of the document table: documents with a few facts of each, or a view with its own columns. A note
// is read when its row comes into sight.
#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QVector>
#include <memory>

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
  // Null for a category.
  const QVector<NoteId>& noteIds() const { return noteIds_; }
  NoteId noteId(int row) const { return noteIds_.value(row); }
  // Rows that are no categories.
  int documentCount() const { return documentCount_; }
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
  const QStringList& texts(int row) const;
  QStringList read(int row) const;
  QStringList readNote(NoteId noteId) const;

  Regional regional_;
  std::shared_ptr<Database> database_;
  std::unique_ptr<ViewRows> view_;  // null where no view is shown
  QVector<NoteId> noteIds_;
  int documentCount_ = 0;
  mutable QCache<int, QStringList> cache_;  // by row
  mutable int notesRead_ = 0;
};

}  // namespace lens
