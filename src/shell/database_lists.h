// Fills the lists of databases. Three windows share the routine; each registers its lists under its name, so
// the routine knows no window class.
#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <functional>

#include "controls/list_box.h"
#include "host/host.h"
#include "shell/globals.h"

namespace lens {

// The server that a combo box means: "Local", written just so, is this machine, whose name is empty.
QString namedServer(const QString& text);

class DatabaseLists {
 public:
  // Whether a database comes into the list; asked for each one anew.
  using Filter = std::function<bool(const NotesDatabase&)>;

  DatabaseLists(Globals& state, Host& host) : state_(state), host_(host) {}

  void registerList(const QString& list, const QString& window, ListBox& box, Filter filter = {});

  // Lists databases and templates of a server. A combination that nobody registered clears and adds nothing,
  // while the directory is still walked.
  void GetDbs(const QString& server, const QString& list, const QString& window);

 private:
  struct Target {
    ListBox* box = nullptr;
    Filter filter;
  };
  void walk(const Target& target);

  Globals& state_;
  Host& host_;
  QHash<QPair<QString, QString>, Target> targets_;
};

}  // namespace lens
