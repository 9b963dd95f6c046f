#include "embedded/model/notes_document.h"

#include "embedded/mime/mime_entity.h"
#include "embedded/model/notes_database.h"
#include "embedded/model/notes_embedded_object.h"
#include "embedded/model/notes_item.h"
#include "embedded/model/notes_mime_entity.h"
#include "embedded/store/case_key.h"

namespace lens {
namespace {

// Runs a read of the store. A damaged note counts as none, so that one bad row does not end a walk.
template <class Read>
bool readable(const Read& read) {
  try {
    return read();
  } catch (const RuntimeError& error) {
    if (error.number() == enginefault::Damaged) return false;
    throw;
  }
}

}  // namespace

bool readableNote(const Database& store, quint32 noteId, Note& note) {
  return readable([&] { return store.read(noteId, note); });
}

Value NotesDocument::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  return readableNote(requireStore(*database), noteId, note) ? of(database, std::move(note)) : nothing();
}

Value NotesDocument::read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid) {
  Note note;
  const Database& store = requireStore(*database);
  return readable([&] { return store.read(unid, note); }) ? of(database, std::move(note)) : nothing();
}

Value NotesDocument::of(const std::shared_ptr<OpenDatabase>& database, Note note) {
  auto open = std::make_shared<OpenNote>();
  open->database = database;
  open->note = std::move(note);
  return newObject<NotesDocument>(std::move(open));
}

const MemberTable& NotesDocument::members() const {
  static const MemberTable table{
      property<&NotesDocument::noteId>(u"NoteID"),
      property<&NotesDocument::universalId>(u"UNIVERSALID"),
      property<&NotesDocument::items>(u"ITEMS"),
      property<&NotesDocument::parentDatabase>(u"PARENTDATABASE"),
      property<&NotesDocument::hasEmbedded>(u"HASEMBEDDED"),
      method<&NotesDocument::hasItem>(u"HASITEM", 1, 1),
      method<&NotesDocument::firstItem>(u"GETFIRSTITEM", 1, 1),
      method<&NotesDocument::itemValue>(u"GETITEMVALUE", 1, 1),
      method<&NotesDocument::attachment>(u"GETATTACHMENT", 1, 1),
      method<&NotesDocument::mimeEntity>(u"GETMIMEENTITY", 0, 1),
      method<&NotesDocument::replaceItemValue>(u"REPLACEITEMVALUE", 2, 2),
      method<&NotesDocument::createRichTextItem>(u"CREATERICHTEXTITEM", 1, 1),
      method<&NotesDocument::removeItem>(u"RemoveItem", 1, 1),
      method<&NotesDocument::save>(u"SAVE", 2, 3),
      method<&NotesDocument::copyToDatabase>(u"COPYTODATABASE", 1, 1),
      method<&NotesDocument::remove>(u"Remove", 1, 1),
      method<&NotesDocument::removePermanently>(u"REMOVEPERMANENTLY", 1, 1),
  };
  return table;
}

void NotesDocument::allow(const Member&) {
  open_->requirePresent();
}

Value NotesDocument::noteId() {
  return QString::number(noteNumber(), 16).toUpper();
}

Value NotesDocument::universalId() {
  return open_->note.header.unid.text();
}

// A fixed list: what a program adds or removes while it walks over it changes nothing in it.
Value NotesDocument::items() {
  QVector<Value> items;
  items.reserve(open_->note.items.size());
  for (qsizetype place = 0; place < open_->note.items.size(); ++place)
    items.push_back(NotesItem::of(open_, open_->numberAt(place)));
  return Value::array(std::move(items));
}

Value NotesDocument::parentDatabase() {
  return NotesDatabase::parentOf(open_->database);
}

Value NotesDocument::hasEmbedded() {
  FileObject file;
  for (const Item& item : std::as_const(open_->note).items)
    if (readAttachedFile(item, file)) return true;
  return false;
}

Value NotesDocument::hasItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  return open_->find(name) != nullptr;
}

Value NotesDocument::firstItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  if (!item) return nothing();
  return NotesItem::of(open_, open_->numberAt(item - std::as_const(open_->note).items.constData()));
}

Value NotesDocument::itemValue(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  return item ? NotesItem::valuesOf(*item) : Value();
}

Value NotesDocument::attachment(const Arguments& arguments) {
  const QHash<QString, FileObject> files = attachedFilesByKey(open_->note);
  const auto file = files.constFind(caseKey(arguments[0].text()));
  return file == files.cend() ? nothing() : newObject<NotesEmbeddedObject>(open_, *file);
}

// The document's first entity, whatever item is meant.
Value NotesDocument::mimeEntity(const Arguments&) {
  if (open_->database->context->convertMime) return nothing();
  const QByteArray message = mimeMessage(open_->note);
  if (message.isEmpty()) return nothing();
  return newObject<NotesMimeEntity>(MimeEntity::parse(message));
}

}  // namespace lens
