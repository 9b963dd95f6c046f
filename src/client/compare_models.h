// What two databases differ in, and two documents side by side, as tables.
#pragma once

#include <QAbstractTableModel>
#include <QPalette>

#include "embedded/checks/database_comparison.h"
#include "host/regional.h"

namespace lens {

// A row for each note that differs.
class DifferenceModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Kind, Title, Items, FirstId, SecondId, Unid, ColumnCount };

  using QAbstractTableModel::QAbstractTableModel;

  void show(QVector<NoteDifference> differences);
  const NoteDifference& difference(int row) const { return differences_[row]; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVector<NoteDifference> differences_;
};

// A row for each item of both notes, those that belong together beside each other. Rows that differ have a
// mark before the name and a ground of their own.
class ItemPairModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Name, First, Second, ColumnCount };

  ItemPairModel(const Regional& regional, QObject* parent)
      : QAbstractTableModel(parent), regional_(regional) {}

  // An empty note where one of them is missing.
  void show(QVector<ItemPair> pairs, Note first, Note second);
  void setTitles(const QString& first, const QString& second);
  // Rows that differ.
  int differing() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QString name(const ItemPair& pair) const;
  QString text(const Note& note, qsizetype place) const;

  Regional regional_;
  QVector<ItemPair> pairs_;
  Note first_, second_;
  QString firstTitle_, secondTitle_;
};

}  // namespace lens
