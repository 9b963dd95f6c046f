// NotesSession: the user, the settings, the way to databases.
#pragma once

#include "embedded/model/database_object.h"
#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class SessionObject : public ModelObject {
 public:
  // The back-end kind needs Initialize before anything else and knows nothing of the client's windows.
  enum class Kind { Client, BackEnd };
  SessionObject(std::shared_ptr<ModelContext> context, Kind kind);

 protected:
  const MemberTable& members() const override;
  void allow(const Member& member) override;

 private:
  DatabaseObject::Source source() const;
  static Members clientMembers();

  std::shared_ptr<ModelContext> context_;
  Kind kind_;
  bool initialized_;
};

}  // namespace lens
