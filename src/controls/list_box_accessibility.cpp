#include "controls/list_box_accessibility.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QHash>
#include <QPersistentModelIndex>
#include <QPointer>
#include <utility>

namespace lens {
namespace {

// A row, which rows added or removed before it carry along.
class AccessibleRow final : public QAccessibleInterface, public QAccessibleTableCellInterface {
 public:
  AccessibleRow(QAbstractItemView* list, const QModelIndex& index) : list_(list), index_(index) {}
  int row() const { return index_.row(); }

  bool isValid() const override { return list_ && index_.isValid(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(list_); }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? index_.data().toString() : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::TableCellInterface ? static_cast<QAccessibleTableCellInterface*>(this)
                                                   : nullptr;
  }

  bool isSelected() const override { return false; }
  QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  int columnIndex() const override { return 0; }
  int rowIndex() const override { return row(); }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return parent(); }

 private:
  QPointer<QAbstractItemView> list_;
  QPersistentModelIndex index_;
};

QRect AccessibleRow::rect() const {
  if (!isValid()) return QRect();
  const QRect place = list_->visualRect(index_);
  return QRect(list_->viewport()->mapToGlobal(place.topLeft()), place.size());
}

QAccessible::State AccessibleRow::state() const {
  QAccessible::State state;
  if (!isValid()) return state;
  state.selectable = state.focusable = true;
  state.focused = list_->currentIndex() == index_;
  state.checked = index_.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  state.invisible = !QRect(list_->mapToGlobal(QPoint()), list_->size()).intersects(rect());
  return state;
}

// A list is told as a table of one column. Rows are made when they are asked for.
class AccessibleListBox final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit AccessibleListBox(QAbstractItemView* list)
      : QAccessibleWidget(list, QAccessible::List), list_(list) {}
  ~AccessibleListBox() override {
    for (const QAccessible::Id id : std::as_const(rows_)) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return rowCount(); }
  QAccessibleInterface* child(int row) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* focusChild() const override { return child(list_->currentIndex().row()); }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Description ? list_->accessibleDescription() : list_->accessibleName();
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this) : nullptr;
  }

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  QAccessibleInterface* cellAt(int row, int column) const override {
    return column == 0 ? child(row) : nullptr;
  }
  int rowCount() const override { return list_->model()->rowCount(); }
  int columnCount() const override { return 1; }
  QString rowDescription(int row) const override { return QString::number(row + 1); }
  QString columnDescription(int column) const override { return QString::number(column + 1); }
  // Marks are not among what is told: they stand in lists of their own.
  int selectedCellCount() const override { return 0; }
  int selectedRowCount() const override { return 0; }
  int selectedColumnCount() const override { return 0; }
  QList<QAccessibleInterface*> selectedCells() const override { return {}; }
  QList<int> selectedRows() const override { return {}; }
  QList<int> selectedColumns() const override { return {}; }
  bool isRowSelected(int) const override { return false; }
  bool isColumnSelected(int) const override { return false; }
  bool selectRow(int) override { return false; }
  bool selectColumn(int) override { return false; }
  bool unselectRow(int) override { return true; }
  bool unselectColumn(int) override { return true; }
  void modelChange(QAccessibleTableModelChangeEvent* event) override;

 private:
  QAbstractItemView* list_;                   // owns the model and outlives this
  mutable QHash<int, QAccessible::Id> rows_;  // those that were asked for
};

QAccessibleInterface* AccessibleListBox::child(int row) const {
  if (row < 0 || row >= rowCount()) return nullptr;
  QAccessible::Id& id = rows_[row];
  if (id == 0) {
    auto* made = new AccessibleRow(list_, list_->model()->index(row, 0));
    id = QAccessible::registerAccessibleInterface(made);
  }
  return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* AccessibleListBox::childAt(int x, int y) const {
  return child(list_->indexAt(list_->viewport()->mapFromGlobal(QPoint(x, y))).row());
}

int AccessibleListBox::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const AccessibleRow*>(child);
  return row && row->parent() == this ? row->row() : -1;
}

// Rows that have moved keep their identity, so that a reader does not lose the one it speaks of. Sorted anew,
// every row may be another one.
void AccessibleListBox::modelChange(QAccessibleTableModelChangeEvent* event) {
  const bool othersNow = event->modelChangeType() == QAccessibleTableModelChangeEvent::ModelReset;
  QHash<int, QAccessible::Id> kept;
  for (const QAccessible::Id id : std::as_const(rows_)) {
    const auto* row = static_cast<AccessibleRow*>(QAccessible::accessibleInterface(id));
    if (row && row->isValid() && !othersNow)
      kept.insert(row->row(), id);
    else
      QAccessible::deleteAccessibleInterface(id);
  }
  rows_ = std::move(kept);
}

}  // namespace

QAccessibleInterface* accessibleList(QAbstractItemView* list) {
  return new AccessibleListBox(list);
}

}  // namespace lens
