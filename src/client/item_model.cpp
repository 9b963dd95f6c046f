#include "client/item_model.h"

#include <QFont>

#include "client/note_texts.h"
#include "client/shown_list.h"

namespace lens {
namespace {

constexpr int kBeginning = 200;  // characters that a row can show

}  // namespace

ItemModel::ItemModel(const Regional& regional, QObject* parent)
    : QAbstractTableModel(parent), regional_(regional) {}

void ItemModel::show(Note note) {
  beginResetModel();
  note_ = std::move(note);
  beginnings_.clear();
  isHit_.clear();
  endResetModel();
}

void ItemModel::markHits(const QueryHits& hits) {
  hits_ = hits;
  isHit_.clear();
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1), {Qt::FontRole});
}

int ItemModel::firstHit() const {
  for (int row = 0; row < rowCount(); ++row)
    if (isHit(row)) return row;
  return -1;
}

bool ItemModel::isHit(int row) const {
  if (hits_.isEmpty()) return false;
  const auto known = isHit_.constFind(row);
  if (known != isHit_.constEnd()) return *known;
  return *isHit_.insert(row, !hits_.in(text(row), name(row)).isEmpty());
}

QString ItemModel::name(int row) const {
  return row >= 0 && row < note_.items.size() ? note_.items[row].name : QString();
}

QString ItemModel::text(int row) const {
  if (row < 0 || row >= note_.items.size()) return {};
  try {
    return itemText(note_.items[row], regional_);
  } catch (const RuntimeError& error) {
    return tr("(unreadable) %1").arg(error.description());
  }
}

const QString& ItemModel::beginning(int row) const {
  const auto known = beginnings_.constFind(row);
  if (known != beginnings_.constEnd()) return *known;
  return *beginnings_.insert(row, text(row).left(2 * kBeginning).simplified().left(kBeginning));
}

int ItemModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(note_.items.size());
}

int ItemModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant ItemModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == Name ? tr("Item") : section == Type ? tr("Type") : tr("Value");
}

QVariant ItemModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= note_.items.size()) return {};
  if (role == kWholeText && index.column() == Content) return text(index.row());
  if (role == Qt::FontRole && isHit(index.row())) {
    QFont strong;
    strong.setBold(true);
    return strong;
  }
  if (role != Qt::DisplayRole) return {};
  const Item& item = note_.items[index.row()];
  if (index.column() == Name) return item.name;
  return index.column() == Type ? itemTypeName(item) : beginning(index.row());
}

}  // namespace lens
