// NotesDatabase: a database of the workspace.
#pragma once

#include <optional>

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class DatabaseObject : public ModelObject {
 public:
  // Where the object comes from decides what the client's windows have to do with it: through the
  // client it sees the selection, and what the workspace gave closes the client's own.
  enum class Source { BackEnd, ClientSession, ClientWindow };

  // Raises when the database cannot be opened.
  static Value open(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place, Source source);
  // An object that is not open when that fails.
  static Value openIfPossible(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                              Source source);
  // An object that knows its place only: its properties are read when they are asked for, and are empty
  // where the file cannot be read; everything else raises.
  static Value unopened(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                        Source source);
  static std::shared_ptr<OpenDatabase> openStore(const std::shared_ptr<ModelContext>& context,
                                                 const DatabasePlace& place, bool withUi);

  DatabaseObject(std::shared_ptr<OpenDatabase> database, Source source)
      : database_(std::move(database)), source_(source) {}
  // Raises when the database is not open.
  const std::shared_ptr<OpenDatabase>& opened() const {
    store();
    return database_;
  }

 protected:
  const MemberTable& members() const override;

 private:
  static Members propertyMembers();
  static Members documentMembers();
  static Members designMembers();
  static Members searchMembers();
  static Members replicaMembers();

  Database& store() const;
  DatabaseInfo info();

  std::shared_ptr<OpenDatabase> database_;
  Source source_;
  bool closed_ = false;
  std::optional<DatabaseInfo> peeked_;  // of a database that is not open
};

}  // namespace lens
