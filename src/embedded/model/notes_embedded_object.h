// NotesEmbeddedObject: a file that is attached to a document.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class NotesEmbeddedObject : public ModelObject {
 public:
  NotesEmbeddedObject(std::shared_ptr<OpenDatabase> database, FileObject file)
      : database_(std::move(database)), file_(std::move(file)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value name();
  Value type();
  Value fileSize();
  Value extractFile(const Arguments& arguments);

  std::shared_ptr<OpenDatabase> database_;
  FileObject file_;
};

}  // namespace lens
