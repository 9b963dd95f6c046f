// NotesView: a view or folder and its documents. Which documents a view has is told in
// embedded/views/view_documents.h.
#pragma once

#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class NotesView : public ModelObject {
 public:
  // Nothing when the note cannot be read.
  static Value read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId);
  NotesView(std::shared_ptr<OpenDatabase> database, Note note)
      : database_(std::move(database)), note_(std::move(note)) {}

 protected:
  const MemberTable& members() const override;

 private:
  Value name();
  Value selectionFormula();
  Value entryCount();
  Value firstDocument();
  Value nextDocument(const Arguments& arguments);
  void refresh();

  std::shared_ptr<OpenDatabase> database_;
  Note note_;
  QVector<quint32> documents_;  // as they were at the last refresh, in order of ID
  bool fresh_ = false;
};

}  // namespace lens
