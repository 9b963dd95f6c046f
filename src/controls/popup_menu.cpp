#include "controls/popup_menu.h"

namespace lens {

Event<>& PopupMenu::addEntry(const QString& key, const QString& caption) {
  Entry& entry = entries_[key];
  if (!entry.action) {
    entry.action = addAction(caption);
    connect(entry.action, &QAction::triggered, this, [&entry] { entry.click.fire(); });
  }
  entry.action->setText(caption);
  return entry.click;
}

Event<>& PopupMenu::click(const QString& key) {
  return find(key).click;
}

QAction& PopupMenu::entry(const QString& key) {
  return *find(key).action;
}

PopupMenu::Entry& PopupMenu::find(const QString& key) {
  const auto found = entries_.find(key);
  if (found == entries_.end()) throw RuntimeError(err::SubscriptOutOfRange);
  return found->second;
}

}  // namespace lens
