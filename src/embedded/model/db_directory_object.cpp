#include "embedded/model/db_directory_object.h"

#include "notes/literals.h"

namespace lens {
namespace {

constexpr double kDatabasesAndTemplates = 1246;
constexpr double kDatabases = 1247;

}  // namespace

const MemberTable& DbDirectoryObject::members() const {
  static const MemberTable table{
      method<&DbDirectoryObject::firstDatabase>(u"GETFIRSTDATABASE", 1, 1),
      property<&DbDirectoryObject::nextDatabase>(u"GETNEXTDATABASE"),
      method<&DbDirectoryObject::byReplicaId>(u"OpenDatabaseByReplicaID", 1, 1),
  };
  return table;
}

Value DbDirectoryObject::firstDatabase(const Arguments& arguments) {
  const double type = arguments[0].number();
  if (type != kDatabasesAndTemplates && type != kDatabases)
    throw RuntimeError(err::InvalidCall, u"The directory of \"%1\": %2 is no type of database"_s.arg(
                                             server_, QString::number(type)));
  const Workspace& workspace = *context_->workspace;
  const QString server = workspace.canonicalServer(server_);
  places_.clear();
  next_ = 0;
  for (const QString& path : workspace.databaseFiles(server))
    if (type == kDatabasesAndTemplates || path.endsWith(u".nsf", Qt::CaseInsensitive))
      places_.push_back({server, path});
  return nextDatabase();
}

Value DbDirectoryObject::nextDatabase() {
  if (next_ >= places_.size()) return nothing();
  return DatabaseObject::unopened(context_, places_[next_++], source_);
}

Value DbDirectoryObject::byReplicaId(const Arguments& arguments) {
  Workspace& workspace = *context_->workspace;
  const QString server = workspace.canonicalServer(server_);
  for (const DatabasePlace& place : workspace.replicas(server, arguments[0].text()))
    return DatabaseObject::openIfPossible(context_, place, source_);
  return DatabaseObject::unopened(context_, {server, QString()}, source_);
}

}  // namespace lens
