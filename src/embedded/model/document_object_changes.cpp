// The members of a document that change its items, and those that change its database.
#include "embedded/format/kept_places.h"
#include "embedded/format/written_value.h"
#include "embedded/model/document_object.h"
#include "embedded/model/parent_database.h"
#include "embedded/model/rich_text_item_object.h"
#include "embedded/store/note_copy.h"
#include "notes/literals.h"

namespace lens {
namespace {

quint32 replaceItem(OpenNote& open, const QString& name, const Value& value) {
  try {
    const Item* present = open.find(name);
    const QByteArray written = writtenValue(value);
    return open.replace(name, present ? withKeptPlaces(written, present->value) : written);
  } catch (const RuntimeError& error) {
    if (error.number() == modelfault::ItemRefused || name.isEmpty()) throw;
    throw RuntimeError(error.number(), u"%1: the item \"%2\" was not changed (%3)"_s.arg(
                                           open.database->place.path, name.left(64), error.description()));
  }
}

Value copyTo(const OpenNote& open, const Value& target) {
  if (target.object().isNothing()) throw RuntimeError(err::ObjectNotSet);
  const std::shared_ptr<OpenDatabase> database = databaseBehind(target);
  if (!database)
    throw RuntimeError(modelfault::WrongKind,
                       u"%1: COPYTODATABASE expects a database"_s.arg(open.database->place.path));
  Note copy = copyNote(open.note, requireStore(*open.database), requireStore(*database));
  tellChanged(*database);
  return DocumentObject::of(database, std::move(copy));
}

}  // namespace

Members DocumentObject::changingMembers() {
  return {
      {u"REPLACEITEMVALUE",
       [](DocumentObject& self, const QString& name, const Value& value) {
         return newItemObject({self.open_, replaceItem(*self.open_, name, value)});
       }},
      // Always a new item, also beside others of the name.
      {u"CREATERICHTEXTITEM",
       [](DocumentObject& self, const QString& name) {
         return newItemObject({self.open_, self.open_->add({name, 0, rawValue(itemtype::RichText, {})})});
       }},
      {u"RemoveItem", [](DocumentObject& self, const QString& name) { self.open_->removeFirst(name); }},
      // Force, whether to answer a changed document, and whether it counts as read, which nobody asks for
      // here.
      {u"SAVE",
       [](DocumentObject& self, bool force, bool asResponse, const Value*) {
         self.open_->save(force, asResponse);
         return true;
       }},
      {u"COPYTODATABASE",
       [](DocumentObject& self, const Value& target) { return copyTo(*self.open_, target); }},
      {u"Remove",
       [](DocumentObject& self, bool force) {
         self.open_->erase(force, true);
         return true;
       }},
      // Nothing tells replicas that the document is gone.
      {u"REMOVEPERMANENTLY",
       [](DocumentObject& self, bool force) {
         self.open_->erase(force, false);
         return true;
       }},
  };
}

}  // namespace lens
