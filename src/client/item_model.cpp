#include "client/item_model.h"

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
  endResetModel();
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
  if (role == kWholeText && index.column() == Content) return text(index.row());
  if (role != Qt::DisplayRole || !index.isValid() || index.row() >= note_.items.size()) return {};
  const Item& item = note_.items[index.row()];
  if (index.column() == Name) return item.name;
  return index.column() == Type ? itemTypeName(item) : beginning(index.row());
}

}  // namespace lens
