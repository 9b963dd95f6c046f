// NotesDocument: a note with its items, as it was stored when the object was made, and what a program has
// changed since then.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/open_note.h"

namespace lens {

class DocumentObject : public ModelObject {
 public:
  // Reads the stored state; nothing when there is no readable note.
  static Value read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId);
  static Value read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid);
  // The first readable one from that place on, so that a walk passes over what is gone or damaged; nothing
  // behind the last one.
  static Value firstReadable(const std::shared_ptr<OpenDatabase>& database, const QVector<NoteId>& notes,
                             qsizetype place);
  // An object for a note that was just read or saved.
  static Value of(const std::shared_ptr<OpenDatabase>& database, Note note);

  explicit DocumentObject(std::shared_ptr<OpenNote> note) : open_(std::move(note)) {}
  NoteId noteNumber() const { return open_->note.header.id; }

 protected:
  const MemberTable& members() const override;
  // A document that was removed has no members any more.
  void allow(const Member& member) override;

 private:
  static Members readingMembers();
  static Members changingMembers();

  std::shared_ptr<OpenNote> open_;
};

}  // namespace lens
