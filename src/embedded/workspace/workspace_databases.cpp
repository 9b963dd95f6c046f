// Databases as a whole: their properties, their replicas, their end; and which of them are address books.
#include <QFile>
#include <QFileInfo>
#include <type_traits>

#include "embedded/files/made_folders.h"
#include "embedded/files/staged_file.h"
#include "embedded/replication/replication.h"
#include "embedded/store/database_file.h"
#include "embedded/workspace/workspace.h"
#include "host/file_identity.h"
#include "notes/literals.h"

namespace lens {
namespace {

// What makes a new file and leaves nothing of it on failure, its folders included. One that tells whether it
// made the file keeps them only then.
template <class Make>
auto withFolders(const QString& file, const Make& make) {
  const QString folder = QFileInfo(file).path();
  MadeFolders folders(folder);
  if (!folders.areReady()) failWorkspace(enginefault::CannotOpen, folder, u"the directory cannot be made"_s);
  auto made = make();
  if constexpr (std::is_same_v<decltype(made), bool>) {
    if (!made) return made;
  }
  folders.keep();
  return made;
}

// A database that another program has open is left alone; one that nobody can open any more is not. A
// journal that stayed beside another file of the same name would be played into it.
void removeOld(const QString& file) {
  try {
    Database::open(file)->removeFile();
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    for (const char* suffix : {"-wal", "-shm", "-journal", ""}) QFile::remove(file + QLatin1String(suffix));
  }
}

std::shared_ptr<Database> replaceDatabase(const QString& file, const DatabaseInfo& info) {
  if (!Database::looksLikeDatabase(file))
    failWorkspace(enginefault::NotADatabase, file, u"the file is no database and is not replaced"_s);
  StagedFile fresh(file, StagedFile::Old::Replace);
  Database::create(fresh.path(), info);  // closed at once, so that nothing stays in its journal
  fresh.requireWhole();
  removeOld(file);
  fresh.putInPlace();
  return Database::open(file);
}

void giveOwnReplicaId(Database& database) {
  DatabaseInfo info = database.info();
  info.replicaId = timeDateHex(newIdTime());
  database.setInfo(info);
}

// Objects that lie in another file come along. Nobody sees it before it is no replica any more.
bool copyWithObjects(Database& source, const QString& file, const CopyProgress& go, QStringList& leftOut) {
  StagedFile fresh(file);
  const ReplicationReport report = lens::createReplica(source, fresh.path(), go);
  if (report.ended) return false;
  giveOwnReplicaId(*Database::open(fresh.path()));
  fresh.putInPlace();
  leftOut = report.leftOut;
  return true;
}

}  // namespace

std::shared_ptr<Database> Workspace::createDatabase(const QString& server, const QString& path,
                                                    const DatabaseInfo& info, bool replace) {
  const QString file = absolutePath(place(server, path));
  const auto created = withFolders(file, [&] {
    if (!QFileInfo::exists(file)) return Database::create(file, info);
    if (!replace) failWorkspace(workspacefault::FileExists, file, u"File already exists"_s);
    if (Database::isOpenHere(file))
      failWorkspace(enginefault::InUse, file, u"the database is open and is not replaced"_s);
    return replaceDatabase(file, info);
  });
  client_.changeDatabases();
  return created;
}

bool Workspace::copyDatabase(Database& source, const QString& file, const CopyProgress& go) {
  QStringList leftOut;
  const bool finished = withFolders(file, [&] {
    return source.objects().hasOutside() ? copyWithObjects(source, file, go, leftOut)
                                         : lens::copyDatabase(source, file, go);
  });
  requireNothingLeftOut(file, leftOut);
  return finished;
}

void Workspace::copyDatabase(const DatabasePlace& from, const DatabasePlace& to) {
  copyDatabase(*database(from.server, from.path), absolutePath(to), {});
  client_.changeDatabases();
}

DatabaseInfo Workspace::infoOf(const DatabasePlace& place) const {
  try {
    const QString file = absolutePath(place);
    return RealDatabases::isReal(file) ? RealDatabases::infoOf(file) : Database::infoOf(file);
  } catch (const RuntimeError&) {
    return {};
  }
}

QVector<DatabasePlace> Workspace::replicas(const QString& server, const QString& replicaId) const {
  const QString name = canonicalServer(server);
  QVector<DatabasePlace> found;
  if (replicaId.isEmpty()) return found;
  for (const QString& path : databases(name))
    if (infoOf({name, path}).replicaId.compare(replicaId, Qt::CaseInsensitive) == 0)
      found.push_back({name, path});
  return found;
}

DatabasePlace Workspace::createReplica(Database& source, const QString& server, const QString& path) {
  const DatabasePlace target = place(server, path);
  const QString file = absolutePath(target);
  if (QFileInfo::exists(file)) failWorkspace(workspacefault::FileExists, file, u"File already exists"_s);
  const ReplicationReport report = withFolders(file, [&] { return lens::createReplica(source, file); });
  client_.changeDatabases();
  requireNothingLeftOut(file, report.leftOut);
  return target;
}

// Real ones are the platform's.
std::shared_ptr<Database> Workspace::ownDatabase(const DatabasePlace& place, const QString& what) {
  const QString file = absolutePath(place);
  auto held = RealDatabases::isReal(file) ? nullptr : database(place.server, place.path);
  if (!held || realDatabase(*held))
    failWorkspace(err::PermissionDenied, file,
                  u"the database is not %1 (it is a real one, which is only read)"_s.arg(what));
  return held;
}

void Workspace::removeDatabase(const DatabasePlace& place) {
  ownDatabase(place, u"removed"_s)->removeFile();
  if (client_.isOnTop(place)) client_.closeDatabase();
  client_.changeDatabases();
}

DatabasePlace Workspace::renameDatabase(const DatabasePlace& from, const QString& path) {
  const DatabasePlace old = place(from.server, from.path), to = newPlace(old, path);
  const QString file = absolutePath(to), oldFile = absolutePath(old);
  if (to == old || (QFileInfo::exists(file) && FileIdentity::of(file) != FileIdentity::of(oldFile)))
    failWorkspace(workspacefault::FileExists, file, u"File already exists"_s);
  const std::shared_ptr<Database> held = ownDatabase(old, u"renamed"_s);
  withFolders(file, [&] {
    held->moveFile(file);
    return true;
  });
  if (client_.isOnTop(old)) client_.closeDatabase();
  client_.changeDatabases();
  return to;
}

QVector<DatabasePlace> Workspace::addressBooks() const {
  QVector<DatabasePlace> books;
  const auto add = [&](const DatabasePlace& book) {
    if (!books.contains(book)) books.push_back(book);
  };
  if (ini_.has(u"Names")) {
    for (const QString& entry : ini_.value(u"Names").split(u',', Qt::SkipEmptyParts)) {
      const qsizetype mark = entry.indexOf(u"!!");
      const QString server = mark < 0 ? QString() : entry.left(mark).trimmed();
      const QString path = entry.mid(mark < 0 ? 0 : mark + 2).trimmed();
      try {
        add(place(server, path));
      } catch (const RuntimeError& error) {
        // A server that does not answer still has its book; a path that leads nowhere names none.
        if (error.number() == workspacefault::UnknownServer) add({server, path});
      }
    }
    return books;
  }
  for (const QString& server : QStringList(QString()) + serverNames()) {
    try {
      const DatabasePlace book = place(server, u"names.nsf"_s);
      if (QFileInfo(absolutePath(book)).isFile()) add(book);
    } catch (const RuntimeError&) {
      // A link that leads outside is no book, and the other servers have theirs.
    }
  }
  return books;
}

bool Workspace::isPublicAddressBook(const DatabasePlace& place) const {
  return !place.server.isEmpty() && addressBooks().contains(place);
}

}  // namespace lens
