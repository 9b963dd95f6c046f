// The members of a document that change its items, and those that change its database.
#include "embedded/format/written_value.h"
#include "embedded/model/database_object.h"
#include "embedded/model/document_object.h"
#include "embedded/model/item_object.h"
#include "embedded/store/note_copy.h"
#include "notes/literals.h"

namespace lens {

Value DocumentObject::replaceItemValue(const Arguments& arguments) {
  const QString name = arguments[0].text();
  try {
    return ItemObject::of(open_, open_->replace(name, writtenValue(arguments[1])));
  } catch (const RuntimeError& error) {
    if (error.number() == modelfault::ItemRefused || name.isEmpty()) throw;
    throw RuntimeError(error.number(), u"%1: the item \"%2\" was not changed (%3)"_s.arg(
                                           open_->database->place.path, name.left(64), error.description()));
  }
}

// Always a new item, also beside others of the name.
Value DocumentObject::createRichTextItem(const Arguments& arguments) {
  return ItemObject::of(open_, open_->add({arguments[0].text(), 0, rawValue(itemtype::RichText, {})}));
}

Value DocumentObject::removeItem(const Arguments& arguments) {
  open_->removeFirst(arguments[0].text());
  return {};
}

// Force, whether to answer a changed document, and whether it counts as read, which nobody asks for here.
Value DocumentObject::save(const Arguments& arguments) {
  open_->save(arguments[0].boolean(), arguments[1].boolean());
  return true;
}

Value DocumentObject::copyToDatabase(const Arguments& arguments) {
  if (arguments[0].object().isNothing()) throw RuntimeError(err::ObjectNotSet);
  const auto target = argumentAs<DatabaseObject>(arguments[0]);
  if (!target)
    throw RuntimeError(modelfault::WrongKind,
                       u"%1: COPYTODATABASE expects a database"_s.arg(open_->database->place.path));
  const std::shared_ptr<OpenDatabase> database = target->opened();
  Note copy = copyNote(open_->note, requireStore(*open_->database), requireStore(*database));
  tellChanged(*database);
  return of(database, std::move(copy));
}

Value DocumentObject::remove(const Arguments& arguments) {
  open_->erase(arguments[0].boolean(), true);
  return true;
}

// Nothing tells replicas that the document is gone.
Value DocumentObject::removePermanently(const Arguments& arguments) {
  open_->erase(arguments[0].boolean(), false);
  return true;
}

}  // namespace lens
