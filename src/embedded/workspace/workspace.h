// A directory of databases: what the embedded engine works on.
//
//   notes.ini         "[Notes]": Directory, NotesProgram, UserName, Names (address books), ...
//   data/             the local databases, in any depth of folders
//   servers/<name>/   one server each; "[Server]" Name=CN=... in its server.ini is its canonical
//                     name, which is "CN=<folder>" when there is no such file
//
// Paths of databases are below the directory of their server. Both "\" and "/" part them, they are
// given back with the host's separator, and one that leads outside is refused. Directory and
// NotesProgram may be relative to the workspace; without entries they are data/ and the workspace
// itself.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>
#include <functional>
#include <memory>

#include "embedded/files/ini_file.h"
#include "embedded/store/database.h"
#include "embedded/store/database_copy.h"
#include "embedded/workspace/client_state.h"
#include "embedded/workspace/real_databases.h"
#include "embedded/workspace/workspace_fault.h"
#include "host/regional.h"

namespace lens {

class Workspace {
 public:
  // Opens the directory, which is made with notes.ini and data/ when only its parent exists. Raises
  // CannotOpen when it is no directory, or cannot be made, read or written.
  static std::shared_ptr<Workspace> open(const QString& directory, const Regional& regional);

  const QString& directory() const { return directory_; }
  const Regional& regional() const { return regional_; }
  ClientState& client() { return client_; }

  QString userName() const;
  // Both without a separator at the end.
  QString dataDirectory() const { return dataDirectory_; }
  QString programDirectory() const;
  // An entry of notes.ini as it stands there, "" when it is missing.
  QString iniValue(QStringView name) const { return ini_.value(name); }
  void setIniValue(const QString& name, const QString& value);

  // Takes in what other programs have changed in notes.ini and among the servers. Raises 75 when notes.ini
  // cannot be read any more.
  void readAgain();

  // Canonical names in order of their folders. The list is read when the workspace is opened, and by
  // readAgain().
  QStringList serverNames() const;
  // Why others have no name and are left out, one sentence each with the file.
  const QStringList& serverFaults() const { return serverFaults_; }
  // Makes a server, or does nothing when it is there.
  void addServer(const QString& canonicalName);
  // The canonical name for a canonical or abbreviated one in any case; "" stays "". Raises
  // UnknownServer, as a server that does not answer would.
  QString canonicalServer(const QString& name) const;

  // Paths of all files that are named like databases, whatever is in them, folders included, sorted by
  // upper-cased path.
  QStringList databaseFiles(const QString& server) const;
  // Those that look like databases, ours or real ones of the platform (real_databases.h).
  QStringList databases(const QString& server) const;
  // Where a database stands, whether or not the file exists. Without an ending ".nsf" is meant,
  // and an existing file is found in any case of letters. A real database of this machine may lie outside the
  // directory; its path is absolute then. Raises BadPath or UnknownServer.
  DatabasePlace place(const QString& server, const QString& path) const;
  QString absolutePath(const DatabasePlace& place) const;

  // Whether a file is a database by its first bytes.
  static bool looksLikeDatabase(const QString& file);

  // The database, opened once for all who hold it. Raises when there is none or it cannot be opened. Of a
  // real database it is a copy that cannot be changed.
  std::shared_ptr<Database> database(const QString& server, const QString& path);
  // The same of one that can be removed or renamed, which `what` says. Raises PermissionDenied for a real
  // one, which is only read, without reading it.
  std::shared_ptr<Database> ownDatabase(const DatabasePlace& place, const QString& what);
  // Makes a new one. An existing file is replaced only on demand, only when it is one of our
  // databases, and only while nobody holds it.
  std::shared_ptr<Database> createDatabase(const QString& server, const QString& path,
                                           const DatabaseInfo& info, bool replace = false);

  // Real databases are read and opened by database(), whoever asks for one.
  void watchRealDatabases(RealDatabaseWatch watch) { real_.setWatch(std::move(watch)); }
  // How a real database was read; none for one of ours.
  std::optional<RealDatabase> realDatabase(const Database& database) const {
    return real_.describe(database);
  }

  // The properties of a database without opening it for good; empty where it cannot be read.
  DatabaseInfo infoOf(const DatabasePlace& place) const;

  // The databases of a server with that replica ID, in order of their paths. Raises UnknownServer.
  QVector<DatabasePlace> replicas(const QString& server, const QString& replicaId) const;
  // A copy under a replica ID of its own (store/database_copy.h), and the folders that lead to it. A failure
  // leaves none. Raises NotesLeftOut behind the finished copy of a real database when damaged notes could not
  // go along.
  void copyDatabase(const DatabasePlace& from, const DatabasePlace& to);
  // The same into a file of the workspace, for a thread that has opened the source for itself; the client is
  // not told. False when it was ended; nothing is left then.
  static bool copyDatabase(Database& source, const QString& file, const CopyProgress& go);
  // Makes a replica, and the folders that lead to it. Raises when there is a file; a failure leaves none.
  // Raises NotesLeftOut behind the finished replica when damaged notes could not go along.
  DatabasePlace createReplica(Database& source, const QString& server, const QString& path);
  // Deletes a database with its journals. Everything in this process that holds it raises from then on, and
  // the client closes it. Raises when it is in use by another process, and then leaves it alone.
  void removeDatabase(const DatabasePlace& place);
  // Gives a database another path on its server, which may differ in the letters' case only, and gives it
  // back as place() has it. Whoever holds it has to open it anew, and the client closes it. Raises as
  // removeDatabase(), and FileExists; nothing has changed then.
  DatabasePlace renameDatabase(const DatabasePlace& from, const QString& path);

  // The books that the entry Names lists ("file" or "server!!file", parted by commas), whether or not they
  // can be opened; without it, names.nsf of the local machine and of each server where there is one.
  QVector<DatabasePlace> addressBooks() const;
  // An address book on a server is everybody's; the one of this machine is its user's own.
  bool isPublicAddressBook(const DatabasePlace& place) const;

  // Whether the user has had enough of what runs now: formulas over many documents, and each formula that
  // takes long, ask it now and then. It must be quick, and not touch the workspace.
  void setInterruptCheck(std::function<bool()> check) { interruptCheck_ = std::move(check); }
  bool isInterrupted() const { return interruptCheck_ && interruptCheck_(); }

  // Whoever changes documents tells it here, so that an open view can follow.
  void setChangeListener(std::function<void(const DatabasePlace&)> listener) {
    changed_ = std::move(listener);
  }
  void notifyChanged(const DatabasePlace& place) const {
    if (changed_) changed_(place);
  }

 private:
  struct Server {
    QString name;
    QString directory;
  };
  Workspace(const QString& directory, const Regional& regional);
  void readServers();
  DatabasePlace newPlace(const DatabasePlace& old, const QString& path) const;
  const QString& serverDirectory(const QString& canonicalName) const;

  QString directory_;
  Regional regional_;
  IniFile ini_;
  QString dataDirectory_;
  QVector<Server> servers_;
  QStringList serverFaults_;
  ClientState client_;
  RealDatabases real_;
  std::function<void(const DatabasePlace&)> changed_;
  std::function<bool()> interruptCheck_;
};

// A hierarchical name without the labels of its parts: "CN=Hub/O=Acme" gives "Hub/Acme".
QString nameWithoutLabels(const QString& canonical);

}  // namespace lens
