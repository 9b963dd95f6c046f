// NotesDbDirectory: the databases of a server, one after the other.
//
// The objects of a walk are not open: their place is known from the directory, and title, template and
// replica ID are read when somebody asks, so that one damaged file among many ends no listing.
#pragma once

#include "embedded/model/database_object.h"
#include "embedded/model/member_table.h"

namespace lens {

class DbDirectoryObject : public ModelObject {
 public:
  // The server is looked for at the first use, as a server is called then.
  DbDirectoryObject(std::shared_ptr<ModelContext> context, QString server, DatabaseObject::Source source)
      : context_(std::move(context)), server_(std::move(server)), source_(source) {}

 protected:
  const MemberTable& members() const override;

 private:
  // Begins a walk over the databases of that type.
  void list(double type);
  Value next();

  std::shared_ptr<ModelContext> context_;
  QString server_;
  DatabaseObject::Source source_;
  QVector<DatabasePlace> places_;
  qsizetype next_ = 0;
};

}  // namespace lens
