#include "client/shown_texts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHash>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr const char* kTexts[] = {"text",
                                  "title",
                                  "windowTitle",
                                  "toolTip",
                                  "statusTip",
                                  "whatsThis",
                                  "accessibleName",
                                  "accessibleDescription",
                                  "placeholderText",
                                  "plainText",
                                  "informativeText",
                                  "labelText"};

class Collector {
 public:
  QVector<ShownText> texts;

  void addObject(const QObject& object) {
    const QString where = QString::fromLatin1(object.metaObject()->className()) + u' ' + object.objectName();
    for (const char* name : kTexts) add(where + u'.' + QLatin1String(name), object.property(name).toString());
    if (auto* bar = qobject_cast<const QStatusBar*>(&object)) add(where, bar->currentMessage());
    if (auto* box = qobject_cast<const QComboBox*>(&object)) addModel(where, *box->model(), {});
    auto* view = qobject_cast<const QAbstractItemView*>(&object);
    // The titles of a table are a view of its model, too.
    if (view && view->model() && !qobject_cast<const QHeaderView*>(view)) addModel(where, *view->model(), {});
  }

 private:
  void add(const QString& where, const QString& text) {
    if (!text.isEmpty()) texts.push_back({where, text});
  }
  void addModel(const QString& where, const QAbstractItemModel& model, const QModelIndex& parent) {
    for (int column = 0; column < model.columnCount(parent); ++column) {
      add(where + u" title"_s, model.headerData(column, Qt::Horizontal).toString());
      for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex cell = model.index(row, column, parent);
        add(where + u" cell"_s, cell.data().toString());
        add(where + u" tip"_s, cell.data(Qt::ToolTipRole).toString());
        if (column == 0) addModel(where, model, cell);
      }
    }
  }
};

class Keys {
 public:
  explicit Keys(QStringList& shared) : shared_(shared) {}
  void add(const QString& caption) {
    const QKeySequence key = QKeySequence::mnemonic(caption);
    if (key.isEmpty()) return;
    if (known_.contains(key.toString())) shared_ += caption + u" / "_s + known_.value(key.toString());
    known_.insert(key.toString(), caption);
  }
  void addActions(const QWidget& menu) {
    for (const QAction* action : menu.actions())
      if (action->isVisible()) add(action->text());
  }

 private:
  QHash<QString, QString> known_;
  QStringList& shared_;
};

}  // namespace

QStringList sharedKeys(const QWidget& window) {
  QStringList shared;
  Keys keys(shared);
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (auto* menu = qobject_cast<const QMenu*>(widget)) Keys(shared).addActions(*menu);
    if (widget->window() != &window || !widget->isVisibleTo(&window)) continue;
    if (auto* bar = qobject_cast<const QMenuBar*>(widget)) keys.addActions(*bar);
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) keys.add(button->text());
    auto* label = qobject_cast<const QLabel*>(widget);
    if (label && label->buddy()) keys.add(label->text());
  }
  return shared;
}

QVector<ShownText> shownTexts(const QWidget& window) {
  Collector collector;
  collector.addObject(window);
  for (const QObject* object : window.findChildren<QObject*>()) collector.addObject(*object);
  return collector.texts;
}

}  // namespace lens
