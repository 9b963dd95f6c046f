#include "embedded/model/form_object.h"

#include "embedded/format/case_key.h"
#include "embedded/model/open_note.h"

namespace lens {

Value FormObject::read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId) {
  Note note;
  if (!readableNote(*database->store, noteId, note)) return nothing();
  return newObject<FormObject>(database, note);
}

FormObject::FormObject(std::shared_ptr<OpenDatabase> database, const Note& note)
    : database_(std::move(database)), fields_(fieldsOf(note)) {
  for (const DesignField& field : fields_)
    if (const QString name = caseKey(field.name); !types_.contains(name)) types_.insert(name, field.type);
}

const MemberTable& FormObject::members() const {
  static const MemberTable table{Members{
      {u"FIELDS",
       [](FormObject& self) {
         QVector<Value> names;
         names.reserve(self.fields_.size());
         for (const DesignField& field : self.fields_) names.push_back(field.name);
         return Value::array(std::move(names));
       }},
      // A name that is no field has the code of the unknown type.
      {u"GETFIELDTYPE",
       [](FormObject& self, const QString& name) {
         return self.types_.value(caseKey(name), int(itemtype::Unknown));
       }},
  }};
  return table;
}

}  // namespace lens
