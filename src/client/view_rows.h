// A view as its columns show it: categories and documents in the view's order. The rows come from the view's
// index; a document is read when the texts of its row are asked for.
#pragma once

#include <QStringList>
#include <memory>

#include "client/row_order.h"
#include "embedded/store/database.h"
#include "embedded/views/view_index.h"
#include "host/regional.h"

namespace lens {

class ViewRows {
 public:
  // Brings the view's index up to date, until the user interrupts it; raises what that raises. Where nobody
  // can read the selection, and nobody can change or remove what is shown for it, these are all documents.
  ViewRows(std::shared_ptr<Database> database, NoteId view, const Regional& regional,
           ViewIndex::Interrupted interrupted);

  struct Column {
    int place = 0;  // among all of the view
    QString title;
    int width = 0;  // characters
    bool isCategory = false;
  };
  // Why its selection cannot be read; "" where it can.
  const QString& whyUnreadable() const { return index_.design().whyHidden; }
  // Those that are not hidden. A view may have none: it has no rows here then.
  const QVector<Column>& columns() const { return columns_; }
  // The note of each row, 0 for a category.
  QVector<NoteId> noteIds() const;
  // One text for each column. Raises UnknownNote for a document that was deleted since.
  QStringList texts(int row);
  // By what the cell of a document counts when rows are ordered. Raises as texts().
  RowKey key(int row, int column);

 private:
  QString text(const formula::Value& value) const;
  QStringList category(const ViewLine& line) const;
  QStringList document(const ViewLine& line);

  std::shared_ptr<Database> database_;
  ViewIndex index_;
  Regional regional_;
  QVector<Column> columns_;
  QVector<ViewLine> lines_;
};

}  // namespace lens
