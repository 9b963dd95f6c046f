#include "embedded/model/notes_document.h"

#include "embedded/mime/mime_entity.h"
#include "embedded/model/notes_database.h"
#include "embedded/model/notes_embedded_object.h"
#include "embedded/model/notes_item.h"
#include "embedded/model/notes_mime_entity.h"

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
  auto open = std::make_shared<OpenNote>();
  if (!readableNote(*database->store, noteId, open->note)) return nothing();
  open->database = database;
  return newObject<NotesDocument>(std::move(open));
}

Value NotesDocument::read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid) {
  auto open = std::make_shared<OpenNote>();
  if (!readable([&] { return database->store->read(unid, open->note); })) return nothing();
  open->database = database;
  return newObject<NotesDocument>(std::move(open));
}

namespace {

// One unit for one, as sameItemName compares.
QString folded(QString name) {
  for (QChar& c : name) c = c.toCaseFolded();
  return name;
}

}  // namespace

const Item* OpenNote::find(const QString& name) const {
  constexpr qsizetype kManyItems = 32;
  if (name.isEmpty()) return nullptr;
  if (note.items.size() < kManyItems) return note.find(name);
  if (places_.isEmpty())
    for (qsizetype place = note.items.size() - 1; place >= 0; --place)
      places_[folded(note.items[place].name)] = place;
  const auto found = places_.constFind(folded(name));
  return found == places_.cend() ? nullptr : &note.items[*found];
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
  };
  return table;
}

Value NotesDocument::noteId() {
  return QString::number(noteNumber(), 16).toUpper();
}

Value NotesDocument::universalId() {
  return open_->note.header.unid.text();
}

Value NotesDocument::items() {
  QVector<Value> items;
  items.reserve(open_->note.items.size());
  for (qsizetype place = 0; place < open_->note.items.size(); ++place)
    items.push_back(NotesItem::at(open_, place));
  return Value::array(std::move(items));
}

Value NotesDocument::parentDatabase() {
  return NotesDatabase::parentOf(open_->database);
}

Value NotesDocument::hasEmbedded() {
  for (const Item& item : open_->note.items)
    if (item.type() == itemtype::Object) return true;
  return false;
}

Value NotesDocument::hasItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  return open_->find(name) != nullptr;
}

Value NotesDocument::firstItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  return item ? NotesItem::at(open_, item - open_->note.items.constData()) : nothing();
}

Value NotesDocument::itemValue(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  return item ? NotesItem::valuesOf(*item) : Value();
}

Value NotesDocument::attachment(const Arguments& arguments) {
  const QString name = arguments[0].text();
  for (const Item& item : open_->note.items) {
    FileObject file;
    if (item.type() == itemtype::Object && readFileObject(item.data(), file) &&
        file.name.compare(name, Qt::CaseInsensitive) == 0)
      return newObject<NotesEmbeddedObject>(open_->database, file);
  }
  return nothing();
}

// The document's first entity, whatever item is meant.
Value NotesDocument::mimeEntity(const Arguments&) {
  if (open_->database->context->convertMime) return nothing();
  const QByteArray message = mimeMessage(open_->note);
  if (message.isEmpty()) return nothing();
  return newObject<NotesMimeEntity>(MimeEntity::parse(message));
}

}  // namespace lens
