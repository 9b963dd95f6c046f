#include "embedded/model/notes_form.h"

#include "embedded/model/notes_document.h"
#include "embedded/store/case_key.h"

namespace lens {

Value NotesForm::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<NotesForm>(database, note);
}

NotesForm::NotesForm(std::shared_ptr<OpenDatabase> database, const Note& note)
    : database_(std::move(database)), fields_(fieldsOf(note)) {
  for (const DesignField& field : fields_)
    if (const QString name = caseKey(field.name); !types_.contains(name)) types_.insert(name, field.type);
}

const MemberTable& NotesForm::members() const {
  static const MemberTable table{
      property<&NotesForm::fields>(u"FIELDS"),
      method<&NotesForm::fieldType>(u"GETFIELDTYPE", 1, 1),
  };
  return table;
}

Value NotesForm::fields() {
  QVector<Value> names;
  names.reserve(fields_.size());
  for (const DesignField& field : fields_) names.push_back(field.name);
  return Value::array(std::move(names));
}

// A name that is no field has the code of the unknown type.
Value NotesForm::fieldType(const Arguments& arguments) {
  return types_.value(caseKey(arguments[0].text()), int(itemtype::Unknown));
}

}  // namespace lens
