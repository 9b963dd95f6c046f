#include "embedded/model/db_directory_object.h"

#include "notes/literals.h"

namespace lens {
namespace {

constexpr double kDatabasesAndTemplates = 1246;
constexpr double kDatabases = 1247;

}  // namespace

void DbDirectoryObject::list(double type) {
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
}

Value DbDirectoryObject::next() {
  if (next_ >= places_.size()) return nothing();
  return DatabaseObject::unopened(context_, places_[next_++], source_);
}

const MemberTable& DbDirectoryObject::members() const {
  static const MemberTable table{Members{
      {u"GETFIRSTDATABASE",
       [](DbDirectoryObject& self, double type) {
         self.list(type);
         return self.next();
       }},
      {u"GETNEXTDATABASE", [](DbDirectoryObject& self) { return self.next(); }},
      {u"OpenDatabaseByReplicaID",
       [](DbDirectoryObject& self, const Value& replicaId) {
         Workspace& workspace = *self.context_->workspace;
         const QString server = workspace.canonicalServer(self.server_);
         for (const DatabasePlace& place : workspace.replicas(server, replicaId.text()))
           return DatabaseObject::openIfPossible(self.context_, place, self.source_);
         return DatabaseObject::unopened(self.context_, {server, QString()}, self.source_);
       }},
  }};
  return table;
}

}  // namespace lens
