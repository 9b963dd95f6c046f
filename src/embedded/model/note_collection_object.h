// NotesNoteCollection: the notes of chosen kinds, as a list of note IDs.
//
// A switch per kind chooses what the next BUILDCOLLECTION takes in. A selection formula takes in the
// documents that it selects, and then only these; it is a text, so that the switch-like True is the
// formula "True", which selects nothing. The list is taken at one moment: a note that goes away keeps its
// place in the walk.
#pragma once

#include <QDateTime>

#include "embedded/design/note_kinds.h"
#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class NoteCollectionObject : public ModelObject {
 public:
  NoteCollectionObject(std::shared_ptr<OpenDatabase> database, bool selectAll);

  bool selects(NoteKind kind) const { return kinds_.has(kind); }
  void select(NoteKind kind, bool on) { kinds_.set(kind, on); }

 protected:
  const MemberTable& members() const override;

 private:
  void setSince(const Value& value);
  void build();
  QVector<NoteId> formulaDocuments() const;
  bool isRecent(NoteId noteId) const;
  QString idAt(qsizetype place) const;

  std::shared_ptr<OpenDatabase> database_;
  NoteKinds kinds_;
  QString formula_;
  Value since_;
  QDateTime sinceInstant_;
  QVector<NoteId> noteIds_;  // ascending
};

}  // namespace lens
