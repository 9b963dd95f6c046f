// NotesForm: a form or subform and the fields that it defines.
#pragma once

#include <QHash>

#include "embedded/design/form_fields.h"
#include "embedded/model/member_table.h"
#include "embedded/model/model_context.h"

namespace lens {

class FormObject : public ModelObject {
 public:
  // Nothing when the note cannot be read.
  static Value read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId);
  FormObject(std::shared_ptr<OpenDatabase> database, const Note& note);

 protected:
  const MemberTable& members() const override;

 private:
  std::shared_ptr<OpenDatabase> database_;
  QVector<DesignField> fields_;
  QHash<QString, int> types_;  // by folded name; the first field of a name counts
};

}  // namespace lens
