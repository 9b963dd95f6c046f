// NotesUIDocument: the document in the client's window.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class UiDocumentObject : public ModelObject {
 public:
  UiDocumentObject(std::shared_ptr<ModelContext> context, DatabasePlace place, NoteId noteId)
      : context_(std::move(context)), place_(std::move(place)), noteId_(noteId) {}

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<ModelContext> context_;
  DatabasePlace place_;
  NoteId noteId_;
};

}  // namespace lens
