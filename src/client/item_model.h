// The items of one note: name, type, beginning of the value.
#pragma once

#include <QAbstractTableModel>
#include <QHash>

#include "embedded/format/note.h"
#include "embedded/search/query_hits.h"
#include "host/regional.h"

namespace lens {

class ItemModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Name, Type, Content, ColumnCount };

  ItemModel(const Regional& regional, QObject* parent);

  void show(Note note);
  const Note& note() const { return note_; }
  // Items that hold what a search found are printed in bold.
  void markHits(const QueryHits& hits);
  // The row of the first of them, -1 without any.
  int firstHit() const;
  // "" for a row that is not there.
  QString name(int row) const;
  // The whole text of an item's value; "" for a row that is not there.
  QString text(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const QString& beginning(int row) const;
  bool isHit(int row) const;

  Regional regional_;
  Note note_;
  QueryHits hits_;
  mutable QHash<int, QString> beginnings_;
  mutable QHash<int, bool> isHit_;
};

}  // namespace lens
