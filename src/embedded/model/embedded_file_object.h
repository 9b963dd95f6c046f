// NotesEmbeddedObject: a file that is attached to a document.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_note.h"

namespace lens {

class EmbeddedFileObject : public ModelObject {
 public:
  // Keeps the document, since a file that was just attached lives with it until it is saved.
  EmbeddedFileObject(std::shared_ptr<OpenNote> note, FileObject file)
      : open_(std::move(note)), file_(std::move(file)) {}

 protected:
  const MemberTable& members() const override;
  void allow(const Member& member) override;

 private:
  std::shared_ptr<OpenNote> open_;
  FileObject file_;
};

}  // namespace lens
