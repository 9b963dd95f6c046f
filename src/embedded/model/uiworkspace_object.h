// NotesUIWorkspace: what the client has on screen.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class UiWorkspaceObject : public ModelObject {
 public:
  explicit UiWorkspaceObject(std::shared_ptr<ModelContext> context) : context_(std::move(context)) {}

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<ModelContext> context_;
};

}  // namespace lens
