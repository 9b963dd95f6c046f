#include "controls/list_box.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <algorithm>

#include "controls/list_box_accessibility.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kInvalidPropertyValue = 380;
constexpr int kInvalidPropertyIndex = 381;

// As thick as a row is high, so that the bar covers exactly one row.
class SidewaysBar : public QScrollBar {
 public:
  explicit SidewaysBar(ListBox* list) : QScrollBar(Qt::Horizontal), list_(list) {}
  QSize sizeHint() const override { return QSize(QScrollBar::sizeHint().width(), list_->rowHeight()); }

 private:
  ListBox* list_;
};

QAccessibleInterface* accessibleListBox(const QString& className, QObject* object) {
  const bool isOurs = className == QLatin1String(ListBox::staticMetaObject.className());
  auto* list = isOurs ? qobject_cast<ListBox*>(object) : nullptr;
  return list ? accessibleList(list) : nullptr;
}

}  // namespace

ListBox::ListBox(QWidget* parent) : QAbstractItemView(parent), rows_(new ListRows(this)) {
  [[maybe_unused]] static const bool once = (QAccessible::installFactory(accessibleListBox), true);
  setModel(rows_);
  setSelectionMode(NoSelection);
  setEditTriggers(NoEditTriggers);
  setFrameStyle(int(Box) | int(Plain));
  setLineWidth(1);
  setHorizontalScrollBar(new SidewaysBar(this));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ListBox::setMultiSelect(bool multiSelect) {
  multiSelect_ = multiSelect;
}

void ListBox::setChecked(bool checked) {
  rows_->setChecks(checked);
  viewport()->update();
}

void ListBox::clear() {
  rows_->clear();
  anchor_ = 0;
}

void ListBox::addItem(const QString& text, int at) {
  if (at < 0 || at > listCount()) throw RuntimeError(err::InvalidCall);
  rows_->insert(at, text);
}

void ListBox::removeItem(int row) {
  requireRow(row, err::InvalidCall);
  rows_->remove(row);
  showIndex();
}

void ListBox::setList(int row, const QString& text) {
  requireRow(row, kInvalidPropertyIndex);
  rows_->setText(row, text);
}

void ListBox::setListIndex(int row) {
  if (row != -1) requireRow(row, kInvalidPropertyValue);
  placeIndex(row);
  if (row == -1) return;
  anchor_ = row;
  scrollTo(rows_->index(row, 0));
  click.raise();
}

bool ListBox::selected(int row) const {
  requireRow(row, kInvalidPropertyIndex);
  return isRowMarked(row);
}

void ListBox::setSelected(int row, bool marked) {
  requireRow(row, kInvalidPropertyIndex);
  if (multiSelect_ || isChecked()) rows_->mark(row, marked);
  if (marked) {
    placeIndex(row);
    anchor_ = row;
    scrollTo(rows_->index(row, 0));
  }
  click.raise();
}

int ListBox::selCount() const {
  if (multiSelect_ || isChecked()) return rows_->markedCount();
  return listIndex() >= 0 ? 1 : 0;
}

QString ListBox::markedText() const {
  QStringList texts;
  if (selCount() > 0)
    for (int row = 0; row < listCount(); ++row)
      if (isRowMarked(row)) texts << list(row);
  return texts.isEmpty() ? text() : texts.join(u"\r\n"_s);
}

void ListBox::refresh() {
  viewport()->repaint();
}

void ListBox::requireRow(int row, int error) const {
  if (row < 0 || row >= listCount()) throw RuntimeError(error);
}

bool ListBox::isRowMarked(int row) const {
  return multiSelect_ || isChecked() ? rows_->isMarked(row) : row == listIndex();
}

void ListBox::placeIndex(int row) {
  rows_->settle();
  const int old = rows_->indexRow();
  rows_->setIndexRow(row);
  if (old >= 0) viewport()->update(rowPlace(old));
  if (row >= 0) viewport()->update(rowPlace(row));
  showIndex();
}

// The view's own current row only tells assistive tools where the index is.
void ListBox::showIndex() {
  selectionModel()->setCurrentIndex(rows_->index(rows_->indexRow(), 0), QItemSelectionModel::NoUpdate);
}

// A choice of the user, by mouse or keyboard.
void ListBox::choose(int row, Choice choice) {
  if (multiSelect_ && !isChecked()) {
    if (choice == Choice::Toggle) rows_->mark(row, !rows_->isMarked(row));
    if (choice == Choice::Plain) rows_->markOnly(row, row);
    if (choice == Choice::Range) {
      anchor_ = std::clamp(anchor_, 0, listCount() - 1);
      rows_->markOnly(std::min(anchor_, row), std::max(anchor_, row));
    }
  } else if (isChecked() && choice == Choice::Toggle) {
    rows_->mark(row, !rows_->isMarked(row));
  }
  if (choice != Choice::Range) anchor_ = row;
  placeIndex(row);
  scrollTo(rows_->index(row, 0));
  click.fire();
}

void ListBox::copy() const {
  QApplication::clipboard()->setText(markedText());
}

void ListBox::selectAll() {
  if (!multiSelect_ || listCount() == 0) return;
  rows_->markOnly(0, listCount() - 1);
  click.fire();
}

// From the list's own height: the viewport gets its size only when the list is first shown.
int ListBox::rowsInView() const {
  const int bar = sidewaysBar_ ? rowHeight_ : 0;
  return std::max(1, (height() - 2 * frameWidth() - bar - 6) / rowHeight_);
}

int ListBox::topIndex() const {
  return verticalScrollBar()->value();
}

void ListBox::setTopIndex(int row) {
  updateGeometries();
  verticalScrollBar()->setValue(row);
}

void ListBox::setRowHeight(int pixels) {
  rowHeight_ = std::max(1, pixels);
  horizontalScrollBar()->updateGeometry();
  // The scroll area asks its bars for their sizes only when it is laid out anew.
  setViewportMargins(viewportMargins());
  doItemsLayout();
}

void ListBox::setHorizontalExtent(int pixels) {
  extent_ = std::max(0, pixels);
  setSidewaysBar(sidewaysBar_ || extent_ > 0);
}

void ListBox::setSidewaysBar(bool shown) {
  sidewaysBar_ = shown;
  setHorizontalScrollBarPolicy(shown ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  doItemsLayout();
}

}  // namespace lens
