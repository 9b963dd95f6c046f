// What the client window keeps between two starts: its place and size, its splitters, the widths of its
// columns, the database on top with the open document, the databases before it (a menu), and the folders of
// its file dialogs.
#pragma once

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include "client/kept_databases.h"
#include "controls/kept_settings.h"

class QSplitter;

namespace lens {

class DatabaseController;
struct ClientControls;

class WindowState : public QObject {
  Q_OBJECT

 public:
  // Adds the menu of recent databases. Nothing is kept yet.
  WindowState(ClientControls& controls, std::shared_ptr<Workspace> workspace, DatabaseController& databases);

  // Brings back what the settings hold and keeps it there from now on. True where they hold a place of the
  // window. The settings live longer than the window; to be called once.
  bool keepIn(KeptSettings& settings);

 private:
  void keepSplitter(QSplitter* splitter);
  void keepSplitters();
  void keepDatabase();
  void fillRecent();
  void openRecent(const DatabasePlace& place);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
  QMenu* recent_;
  KeptSettings* settings_ = nullptr;
  std::unique_ptr<KeptDatabases> kept_;  // null until settings are given
  QVector<QPointer<QSplitter>> splitters_;
  QTimer later_;  // runs while a splitter is being moved
};

}  // namespace lens
