#include "embedded/model/notes_db_directory.h"

namespace lens {
namespace {

constexpr double kDatabasesAndTemplates = 1246;
constexpr double kDatabases = 1247;

}  // namespace

const MemberTable& NotesDbDirectory::members() const {
  static const MemberTable table{
      method<&NotesDbDirectory::firstDatabase>(u"GETFIRSTDATABASE", 1, 1),
      property<&NotesDbDirectory::nextDatabase>(u"GETNEXTDATABASE"),
      method<&NotesDbDirectory::byReplicaId>(u"OpenDatabaseByReplicaID", 1, 1),
  };
  return table;
}

Value NotesDbDirectory::firstDatabase(const Arguments& arguments) {
  const double type = arguments[0].number();
  if (type != kDatabasesAndTemplates && type != kDatabases)
    throw RuntimeError(err::InvalidCall, QStringLiteral("The directory of \"%1\": %2 is no type of database")
                                             .arg(server_, QString::number(type)));
  const Workspace& workspace = *context_->workspace;
  const QString server = workspace.canonicalServer(server_);
  places_.clear();
  next_ = 0;
  for (const QString& path : workspace.databaseFiles(server))
    if (type == kDatabasesAndTemplates || path.endsWith(u".nsf", Qt::CaseInsensitive))
      places_.push_back({server, path});
  return nextDatabase();
}

Value NotesDbDirectory::nextDatabase() {
  if (next_ >= places_.size()) return nothing();
  return NotesDatabase::unopened(context_, places_[next_++], source_);
}

Value NotesDbDirectory::byReplicaId(const Arguments& arguments) {
  Workspace& workspace = *context_->workspace;
  const QString server = workspace.canonicalServer(server_);
  for (const DatabasePlace& place : workspace.replicas(server, arguments[0].text()))
    return NotesDatabase::openIfPossible(context_, place, source_);
  return NotesDatabase::unopened(context_, {server, QString()}, source_);
}

}  // namespace lens
