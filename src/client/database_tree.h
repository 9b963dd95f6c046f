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
  // What to do about the file under the cursor, which nobody can open here; "" on everything else.
  QString currentAdvice() const;
  // The server under the cursor or of the database there; "" for the local machine.
  QString currentServer() const;

 Q_SIGNALS:
  // Double click on a database, or on a file that is none.
  void databaseChosen();
  // The databases of a server cannot be listed.
  void listingFailed(const QString& reason);

 private:
  void addServer(const QString& server, const QStringList& unfolded);
  void fill(QTreeWidgetItem* server);
  void addFile(QTreeWidgetItem* server, const DatabasePlace& place);
  QTreeWidgetItem* rowOf(const DatabasePlace& place);

  std::shared_ptr<Workspace> workspace_;
  std::optional<DatabasePlace> open_;
};

// A server as the user reads it; the local machine is "Local".
QString serverLabel(const QString& server);

}  // namespace lens
