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
  for (const NoteId id : notesOfKinds(*database->store, kinds))
    if (const Value object = Class::read(database, id); object.object()) objects.push_back(object);
  return objects;
}

}  // namespace

Members DatabaseObject::designMembers() {
  return {
      {u"VIEWS",
       [](DatabaseObject& self) {
         self.store();
         return Value::array(objectsOf<ViewObject>(self.database_, kViewsAndFolders));
       }},
      {u"GETVIEW",
       [](DatabaseObject& self, const QString& name) {
         const NoteId id = findView(self.store(), name);
         return id.isNull() ? nothing() : ViewObject::read(self.database_, id);
       }},
      // Empty, not an array without places: readers ask for that.
      {u"AGENTS",
       [](DatabaseObject& self) {
         self.store();
         QVector<Value> agents = objectsOf<AgentObject>(self.database_, {NoteKind::Agents});
         return agents.isEmpty() ? Value() : Value::array(std::move(agents));
       }},
      {u"GETAGENT",
       [](DatabaseObject& self, const QString& name) {
         const NoteId id = findDesignElement(self.store(), {NoteKind::Agents}, name);
         return id.isNull() ? nothing() : AgentObject::read(self.database_, id);
       }},
      // A subform is found too, unless a form has the name.
      {u"GETFORM",
       [](DatabaseObject& self, const QString& name) {
         NoteId id = findDesignElement(self.store(), {NoteKind::Forms}, name);
         if (id.isNull()) id = findDesignElement(self.store(), {NoteKind::Subforms}, name);
         return id.isNull() ? nothing() : FormObject::read(self.database_, id);
       }},
      // All profiles, or those of one name.
      {u"GETPROFILEDOCCOLLECTION",
       [](DatabaseObject& self, const Value* wanted) {
         const QString name = wanted ? wanted->text() : QString();
         QVector<NoteId> ids;
         for (const Profile& profile : profilesOf(self.store()))
           if (name.isEmpty() || isProfileCalled(profile.name, name)) ids.push_back(profile.id);
         return newObject<DocumentCollectionObject>(self.database_, std::move(ids));
       }},
      {u"CREATENOTECOLLECTION",
       [](DatabaseObject& self, const Value* selectAll) {
         self.store();
         return newObject<NoteCollectionObject>(self.database_, selectAll && selectAll->boolean());
       }},
  };
}

}  // namespace lens
