// The tree of servers and their databases.
#pragma once

#include <QTreeWidget>
#include <memory>
#include <optional>

#include "embedded/workspace/workspace.h"

namespace lens {

class DatabaseTree : public QTreeWidget {
  Q_OBJECT

 public:
  explicit DatabaseTree(QWidget* parent = nullptr);

  void setWorkspace(std::shared_ptr<Workspace> workspace);
  // Reads servers and databases again; what was unfolded and current stays so.
  void refresh();
  // Prints the open database in bold and makes it the current row.
  void markOpen(const std::optional<DatabasePlace>& place);

  // The database under the cursor, none on a server.
  std::optional<DatabasePlace> currentPlace() const;
  // The server under the cursor or of the database there; "" for the local machine.
  QString currentServer() const;

 Q_SIGNALS:
  // Double click or Enter on a database.
  void databaseChosen();
  // The databases of a server cannot be listed.
  void listingFailed(const QString& reason);

 private:
  void addServer(const QString& server, const QStringList& unfolded);
  void fill(QTreeWidgetItem* server);
  QTreeWidgetItem* rowOf(const DatabasePlace& place);

  std::shared_ptr<Workspace> workspace_;
  std::optional<DatabasePlace> open_;
};

// A server as the user reads it; the local machine is "Local".
QString serverLabel(const QString& server);

}  // namespace lens
