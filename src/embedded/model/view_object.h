// NotesView: a view or folder. Its documents and their order come from its index (embedded/views).
#pragma once

#include <QHash>
#include <memory>

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class ViewIndex;

class ViewObject : public ModelObject {
 public:
  // Nothing when the note cannot be read.
  static Value read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId);
  ViewObject(std::shared_ptr<OpenDatabase> database, Note note);
  ~ViewObject() override;

 protected:
  const MemberTable& members() const override;

 private:
  static Members ownMembers();
  static Members documentMembers();
  ViewIndex& refreshed();
  void readDocuments();
  Value readableFrom(qsizetype place) const;

  std::shared_ptr<OpenDatabase> database_;
  Note note_;
  std::unique_ptr<ViewIndex> index_;
  // In view order, as they were when the first one was asked for.
  QVector<NoteId> documents_;
  QHash<NoteId, qsizetype> places_;
};

}  // namespace lens
