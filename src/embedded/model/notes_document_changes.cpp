// The members of a document that change its items, and those that change its database.
#include "embedded/model/notes_database.h"
#include "embedded/model/notes_document.h"
#include "embedded/model/notes_item.h"
#include "embedded/store/note_copy.h"
#include "embedded/store/written_value.h"

namespace lens {

Value NotesDocument::replaceItemValue(const Arguments& arguments) {
  const QString name = arguments[0].text();
  try {
    return NotesItem::of(open_, open_->replace(name, writtenValue(arguments[1])));
  } catch (const RuntimeError& error) {
    if (error.number() == modelfault::ItemRefused || name.isEmpty()) throw;
    throw RuntimeError(error.number(),
                       QStringLiteral("%1: the item \"%2\" was not changed (%3)")
                           .arg(open_->database->place.path, name.left(64), error.description()));
  }
}

// Always a new item, also beside others of the name.
Value NotesDocument::createRichTextItem(const Arguments& arguments) {
  return NotesItem::of(open_, open_->add({arguments[0].text(), 0, rawValue(itemtype::RichText, {})}));
}

Value NotesDocument::removeItem(const Arguments& arguments) {
  open_->removeFirst(arguments[0].text());
  return {};
}

// Force, whether to answer a changed document, and whether it counts as read, which nobody asks for here.
Value NotesDocument::save(const Arguments& arguments) {
  open_->save(arguments[0].boolean(), arguments[1].boolean());
  return true;
}

Value NotesDocument::copyToDatabase(const Arguments& arguments) {
  if (arguments[0].object().isNothing()) throw RuntimeError(err::ObjectNotSet);
  const auto target = argumentAs<NotesDatabase>(arguments[0]);
  if (!target)
    throw RuntimeError(
        modelfault::WrongKind,
        QStringLiteral("%1: COPYTODATABASE expects a database").arg(open_->database->place.path));
  const std::shared_ptr<OpenDatabase> database = target->opened();
  Note copy = copyNote(open_->note, requireStore(*open_->database), requireStore(*database));
  tellChanged(*database);
  return of(database, std::move(copy));
}

Value NotesDocument::remove(const Arguments& arguments) {
  open_->erase(arguments[0].boolean(), true);
  return true;
}

// Nothing tells replicas that the document is gone.
Value NotesDocument::removePermanently(const Arguments& arguments) {
  open_->erase(arguments[0].boolean(), false);
  return true;
}

}  // namespace lens
