// Opening, making and closing databases in the client window, and what the window says about the open one:
// page, title and status.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

#include "embedded/workspace/workspace.h"

namespace lens {

class DocumentPane;
class ViewPane;
struct ClientControls;

// The workspace's ClientState says what is open; this shows it, changes it, and follows what programs change
// there.
class DatabaseController : public QObject, private ClientListener {
  Q_OBJECT

 public:
  // Becomes the listener of the workspace's client and of its changes until it is destroyed.
  DatabaseController(ClientControls& controls, std::shared_ptr<Workspace> workspace, ViewPane& views,
                     DocumentPane& document);
  ~DatabaseController() override;

  // Shows what is open by now.
  void start();

  // These tell a failure in the window, leave everything as it was then, and give false or null.
  bool open(const DatabasePlace& place);
  // A file of this machine by its path: a real database wherever it lies, one of ours below the directory of
  // databases.
  bool openFile(const QString& path);
  // Makes an empty database and opens it; its title is its file name.
  bool create(const QString& server, const QString& path);
  struct Placed {
    DatabasePlace place;
    std::shared_ptr<Database> database;
  };
  // Makes an empty database beside the open one.
  std::optional<Placed> make(const QString& server, const QString& path);
  // Asks for the path of a database to be made on the server that is current in the tree, which it gives
  // too. Empty when the user gives up.
  DatabasePlace askNewPlace();

  void close();
  // Closes it and opens it again, where another file stands behind it by now.
  void reopen();
  // How it was read; none where it is no copy of a real database, which nobody changes.
  std::optional<RealDatabase> real() const {
    return database_ ? workspace_->realDatabase(*database_) : std::nullopt;
  }
  bool isCopy() const { return real().has_value(); }
  // Reads servers, views, documents and the open document again.
  void refresh();

  // The open database; null for none.
  const std::shared_ptr<Database>& database() const { return database_; }
  const std::optional<DatabasePlace>& place() const { return place_; }

 Q_SIGNALS:
  // Another page is shown, or the same of another database.
  void pageShown();

 private:
  void refreshView() override;
  void settle() override;
  void databaseShown() override { syncWithState(); }
  void documentClosed() override;
  void databaseClosed() override { syncWithState(); }
  void databasesChanged() override;

  void connectActions();
  void syncWithState();
  bool load();
  void unload(const QString& why = {});
  void showPage();
  void showTitle();
  void showCounts();
  void reloadView();

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  ViewPane& views_;
  DocumentPane& document_;
  std::shared_ptr<Database> database_;
  std::optional<DatabasePlace> place_;
  QTimer reload_;             // runs while a refresh that somebody asked for waits
  QElapsedTimer lastReload_;  // begins at the end of a reload
};

}  // namespace lens
