// What a database tells of its design: views, forms, agents, profiles, collections of notes.
#include "embedded/design/design_elements.h"
#include "embedded/design/profile_notes.h"
#include "embedded/model/agent_object.h"
#include "embedded/model/database_object.h"
#include "embedded/model/document_collection_object.h"
#include "embedded/model/form_object.h"
#include "embedded/model/note_collection_object.h"
#include "embedded/model/view_object.h"

namespace lens {
namespace {

// One object of the class for each note that can be read.
template <class Class>
QVector<Value> objectsOf(const std::shared_ptr<OpenDatabase>& database, NoteKinds kinds) {
  QVector<Value> objects;
  for (const quint32 id : notesOfKinds(*database->store, kinds))
    if (const Value object = Class::read(database, id); object.object()) objects.push_back(object);
  return objects;
}

}  // namespace

Value DatabaseObject::views() {
  store();
  return Value::array(objectsOf<ViewObject>(database_, kViewsAndFolders));
}

Value DatabaseObject::view(const Arguments& arguments) {
  const quint32 id = findView(store(), arguments[0].text());
  return id == 0 ? nothing() : ViewObject::read(database_, id);
}

// Empty, not an array without places: readers ask for that.
Value DatabaseObject::agents() {
  store();
  QVector<Value> agents = objectsOf<AgentObject>(database_, {NoteKind::Agents});
  return agents.isEmpty() ? Value() : Value::array(std::move(agents));
}

Value DatabaseObject::agent(const Arguments& arguments) {
  const quint32 id = findDesignElement(store(), {NoteKind::Agents}, arguments[0].text());
  return id == 0 ? nothing() : AgentObject::read(database_, id);
}

// A subform is found too, unless a form has the name.
Value DatabaseObject::form(const Arguments& arguments) {
  const QString name = arguments[0].text();
  quint32 id = findDesignElement(store(), {NoteKind::Forms}, name);
  if (id == 0) id = findDesignElement(store(), {NoteKind::Subforms}, name);
  return id == 0 ? nothing() : FormObject::read(database_, id);
}

// All profiles, or those of one name.
Value DatabaseObject::profileDocuments(const Arguments& arguments) {
  const QString name = arguments.isEmpty() ? QString() : arguments[0].text();
  QVector<quint32> ids;
  for (const Profile& profile : profilesOf(store()))
    if (name.isEmpty() || isProfileCalled(profile.name, name)) ids.push_back(profile.id);
  return newObject<DocumentCollectionObject>(database_, std::move(ids));
}

Value DatabaseObject::noteCollection(const Arguments& arguments) {
  store();
  return newObject<NoteCollectionObject>(database_, !arguments.isEmpty() && arguments[0].boolean());
}

}  // namespace lens
