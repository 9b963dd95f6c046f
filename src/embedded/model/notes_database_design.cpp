// What a database tells of its design: views, forms, agents, profiles, collections of notes.
#include "embedded/design/design_elements.h"
#include "embedded/design/profiles.h"
#include "embedded/model/notes_agent.h"
#include "embedded/model/notes_database.h"
#include "embedded/model/notes_document_collection.h"
#include "embedded/model/notes_form.h"
#include "embedded/model/notes_note_collection.h"
#include "embedded/model/notes_view.h"

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

Value NotesDatabase::views() {
  store();
  return Value::array(objectsOf<NotesView>(database_, kViewsAndFolders));
}

Value NotesDatabase::view(const Arguments& arguments) {
  const quint32 id = findView(store(), arguments[0].text());
  return id == 0 ? nothing() : NotesView::read(database_, id);
}

// Empty, not an array without places: readers ask for that.
Value NotesDatabase::agents() {
  store();
  QVector<Value> agents = objectsOf<NotesAgent>(database_, {NoteKind::Agents});
  return agents.isEmpty() ? Value() : Value::array(std::move(agents));
}

Value NotesDatabase::agent(const Arguments& arguments) {
  const quint32 id = findDesignElement(store(), {NoteKind::Agents}, arguments[0].text());
  return id == 0 ? nothing() : NotesAgent::read(database_, id);
}

// A subform is found too, unless a form has the name.
Value NotesDatabase::form(const Arguments& arguments) {
  const QString name = arguments[0].text();
  quint32 id = findDesignElement(store(), {NoteKind::Forms}, name);
  if (id == 0) id = findDesignElement(store(), {NoteKind::Subforms}, name);
  return id == 0 ? nothing() : NotesForm::read(database_, id);
}

// All profiles, or those of one name.
Value NotesDatabase::profileDocuments(const Arguments& arguments) {
  const QString name = arguments.isEmpty() ? QString() : arguments[0].text();
  QVector<quint32> ids;
  for (const Profile& profile : profilesOf(store()))
    if (name.isEmpty() || isProfileCalled(profile.name, name)) ids.push_back(profile.id);
  return newObject<NotesDocumentCollection>(database_, std::move(ids));
}

Value NotesDatabase::noteCollection(const Arguments& arguments) {
  store();
  return newObject<NotesNoteCollection>(database_, !arguments.isEmpty() && arguments[0].boolean());
}

}  // namespace lens
