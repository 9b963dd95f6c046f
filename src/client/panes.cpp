#include "client/panes.h"

#include <QHeaderView>
#include <QLabel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "controls/fonts.h"

namespace lens {
namespace {

constexpr int kRoom = 4;  // pixels above and below a row's text together

class RoomyRows : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), option.fontMetrics.height() + kRoom};
  }
};

}  // namespace

void useListFont(QWidget& widget) {
  QFont font = widget.font();
  font.setFamily(monospaceFamily());
  widget.setFont(font);
}

void giveRowsRoom(QAbstractItemView& view) {
  view.setItemDelegate(new RoomyRows(&view));
}

void prepareTable(QTableView& table) {
  useListFont(table);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setTabKeyNavigation(false);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setCornerButtonEnabled(false);
  table.verticalHeader()->hide();
  table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + kRoom);
  table.horizontalHeader()->setHighlightSections(false);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

RichTextBox* readingBox(const QString& name, QWidget* parent) {
  auto* box = new RichTextBox(parent);
  box->setObjectName(name);
  box->setReadOnly(true);
  box->setTabChangesFocus(true);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  useListFont(*box);
  return box;
}

void giveKeys(QAction& action, const QList<QKeySequence>& keys, QWidget& where) {
  action.setShortcuts(keys);
  action.setShortcutContext(Qt::WidgetWithChildrenShortcut);
  where.addAction(&action);
}

QList<QKeySequence> enterKeys() {
  return {Qt::Key_Return, Qt::Key_Enter};
}

QWidget* labelled(const QString& caption, QWidget* content) {
  // Screen readers find the label of a box by themselves, but not that of a table.
  if (content->accessibleName().isEmpty())
    content->setAccessibleName(QString(caption).remove(u'&').remove(u':'));
  auto* pane = new QWidget;
  auto* layout = new QVBoxLayout(pane);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(3);
  auto* label = new QLabel(caption, pane);
  label->setBuddy(content);
  layout->addWidget(label);
  layout->addWidget(content, 1);
  return pane;
}

}  // namespace lens
