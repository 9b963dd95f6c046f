// A menu of named entries that opens at a place on the screen.
#pragma once

#include <QMenu>
#include <map>

#include "controls/event.h"

namespace lens {

class PopupMenu : public QMenu {
  Q_OBJECT

 public:
  explicit PopupMenu(QWidget* parent = nullptr) : QMenu(parent) {}

  // Gives the click of the new entry; it stays valid as long as the menu. A key that is there already
  // gives the old entry with the new caption.
  Event<>& addEntry(const QString& key, const QString& caption);
  // Both raise 9 for an unknown key.
  Event<>& click(const QString& key);
  QAction& entry(const QString& key);

  // Opens the menu at a screen position and returns at once.
  void popupAt(const QPoint& position) { popup(position); }

 private:
  struct Entry {
    QAction* action = nullptr;  // owned by the menu
    Event<> click;
  };
  Entry& find(const QString& key);

  std::map<QString, Entry> entries_;
};

}  // namespace lens
