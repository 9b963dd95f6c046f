#include "controls/status_bar_accessibility.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QVector>

#include "controls/status_bar.h"

namespace lens {
namespace {

class AccessiblePanel final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessiblePanel(StatusBar& bar, const QString& key) : bar_(&bar), key_(key) {}

  bool isValid() const override { return bar_ && bar_->hasPanel(key_); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(bar_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::StaticText; }
  // A panel that shows nothing is told by what it is for.
  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name || !isValid()) return {};
    const QString shown = bar_->panelText(key_);
    return shown.isEmpty() ? key_ : shown;
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    const QRect place = bar_->panelRect(key_);
    return {bar_->mapToGlobal(place.topLeft()), place.size()};
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.disabled = !bar_->isPanelEnabled(key_);
    state.invisible = !bar_->isVisible();
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action == pressAction() && isValid()) bar_->panelClick.fire(key_);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<StatusBar> bar_;
  const QString key_;
};

class AccessibleStatusBar final : public QAccessibleWidget {
 public:
  explicit AccessibleStatusBar(StatusBar& bar) : QAccessibleWidget(&bar, QAccessible::StatusBar), bar_(bar) {}
  ~AccessibleStatusBar() override {
    for (const QAccessible::Id id : std::as_const(panels_)) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return int(bar_.panels().size()); }
  QAccessibleInterface* child(int place) const override {
    const QStringList keys = bar_.panels();
    if (place < 0 || place >= keys.size()) return nullptr;
    while (panels_.size() < keys.size())
      panels_ += QAccessible::registerAccessibleInterface(new AccessiblePanel(bar_, keys[panels_.size()]));
    return QAccessible::accessibleInterface(panels_[place]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (qsizetype place = 0; place < panels_.size(); ++place)
      if (QAccessible::accessibleInterface(panels_[place]) == child) return int(place);
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int place = 0; place < childCount(); ++place)
      if (child(place)->rect().contains(x, y)) return child(place);
    return nullptr;
  }

 private:
  StatusBar& bar_;
  mutable QVector<QAccessible::Id> panels_;
};

QAccessibleInterface* accessibleStatusBar(const QString&, QObject* object) {
  auto* bar = qobject_cast<StatusBar*>(object);
  return bar ? new AccessibleStatusBar(*bar) : nullptr;
}

}  // namespace

void makeStatusBarsAccessible() {
  [[maybe_unused]] static const bool once = (QAccessible::installFactory(accessibleStatusBar), true);
}

}  // namespace lens
