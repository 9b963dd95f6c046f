#include "embedded/model/form_object.h"

#include "embedded/format/case_key.h"
#include "embedded/model/document_object.h"

namespace lens {

Value FormObject::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
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
  static const MemberTable table{
      property<&FormObject::fields>(u"FIELDS"),
      method<&FormObject::fieldType>(u"GETFIELDTYPE", 1, 1),
  };
  return table;
}

Value FormObject::fields() {
  QVector<Value> names;
  names.reserve(fields_.size());
  for (const DesignField& field : fields_) names.push_back(field.name);
  return Value::array(std::move(names));
}

// A name that is no field has the code of the unknown type.
Value FormObject::fieldType(const Arguments& arguments) {
  return types_.value(caseKey(arguments[0].text()), int(itemtype::Unknown));
}

}  // namespace lens
