// Databases as a whole: their properties, their replicas, their end; and which of them are address books.
#include <QDir>
#include <QFileInfo>

#include "embedded/replication/replication.h"
#include "embedded/workspace.h"

namespace lens {

DatabaseInfo Workspace::infoOf(const DatabasePlace& place) const {
  try {
    return Database::infoOf(absolutePath(place));
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
  if (QFileInfo::exists(file))
    throw RuntimeError(workspacefault::FileExists, QStringLiteral("%1: File already exists").arg(file));
  const QString folder = QFileInfo(file).path();
  if (!QDir().mkpath(folder))
    throw RuntimeError(workspacefault::CannotOpen,
                       QStringLiteral("%1: the directory cannot be made").arg(folder));
  lens::createReplica(source, file);
  client_.changeDatabases();
  return target;
}

void Workspace::removeDatabase(const DatabasePlace& place) {
  const std::shared_ptr<Database> held = database(place.server, place.path);
  held->removeFile();
  open_.remove(absolutePath(place));
  if (client_.isOnTop(place)) client_.closeDatabase();
  client_.changeDatabases();
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
      const DatabasePlace book = place(server, QStringLiteral("names.nsf"));
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
