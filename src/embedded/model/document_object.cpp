#include "embedded/model/document_object.h"

#include "embedded/format/case_key.h"
#include "embedded/mime/mime_entity.h"
#include "embedded/model/database_object.h"
#include "embedded/model/embedded_file_object.h"
#include "embedded/model/item_object.h"
#include "embedded/model/mime_entity_object.h"

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
  return readable([&] { return store.notes().read(noteId, note); });
}

Value DocumentObject::read(const std::shared_ptr<OpenDatabase>& database, quint32 noteId) {
  Note note;
  return readableNote(requireStore(*database), noteId, note) ? of(database, std::move(note)) : nothing();
}

Value DocumentObject::read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid) {
  Note note;
  const Database& store = requireStore(*database);
  return readable([&] { return store.notes().read(unid, note); }) ? of(database, std::move(note)) : nothing();
}

Value DocumentObject::of(const std::shared_ptr<OpenDatabase>& database, Note note) {
  auto open = std::make_shared<OpenNote>();
  open->database = database;
  open->note = std::move(note);
  return newObject<DocumentObject>(std::move(open));
}

const MemberTable& DocumentObject::members() const {
  static const MemberTable table{
      property<&DocumentObject::noteId>(u"NoteID"),
      property<&DocumentObject::universalId>(u"UNIVERSALID"),
      property<&DocumentObject::items>(u"ITEMS"),
      property<&DocumentObject::parentDatabase>(u"PARENTDATABASE"),
      property<&DocumentObject::hasEmbedded>(u"HASEMBEDDED"),
      method<&DocumentObject::hasItem>(u"HASITEM", 1, 1),
      method<&DocumentObject::firstItem>(u"GETFIRSTITEM", 1, 1),
      method<&DocumentObject::itemValue>(u"GETITEMVALUE", 1, 1),
      method<&DocumentObject::attachment>(u"GETATTACHMENT", 1, 1),
      method<&DocumentObject::mimeEntity>(u"GETMIMEENTITY", 0, 1),
      method<&DocumentObject::replaceItemValue>(u"REPLACEITEMVALUE", 2, 2),
      method<&DocumentObject::createRichTextItem>(u"CREATERICHTEXTITEM", 1, 1),
      method<&DocumentObject::removeItem>(u"RemoveItem", 1, 1),
      method<&DocumentObject::save>(u"SAVE", 2, 3),
      method<&DocumentObject::copyToDatabase>(u"COPYTODATABASE", 1, 1),
      method<&DocumentObject::remove>(u"Remove", 1, 1),
      method<&DocumentObject::removePermanently>(u"REMOVEPERMANENTLY", 1, 1),
  };
  return table;
}

void DocumentObject::allow(const Member&) {
  open_->requirePresent();
}

Value DocumentObject::noteId() {
  return QString::number(noteNumber(), 16).toUpper();
}

Value DocumentObject::universalId() {
  return open_->note.header.unid.text();
}

// A fixed list: what a program adds or removes while it walks over it changes nothing in it.
Value DocumentObject::items() {
  QVector<Value> items;
  items.reserve(open_->note.items.size());
  for (qsizetype place = 0; place < open_->note.items.size(); ++place)
    items.push_back(ItemObject::of(open_, open_->numberAt(place)));
  return Value::array(std::move(items));
}

Value DocumentObject::parentDatabase() {
  return DatabaseObject::parentOf(open_->database);
}

Value DocumentObject::hasEmbedded() {
  FileObject file;
  for (const Item& item : std::as_const(open_->note).items)
    if (readAttachedFile(item, file)) return true;
  return false;
}

Value DocumentObject::hasItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  return open_->find(name) != nullptr;
}

Value DocumentObject::firstItem(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  if (!item) return nothing();
  return ItemObject::of(open_, open_->numberAt(item - std::as_const(open_->note).items.constData()));
}

Value DocumentObject::itemValue(const Arguments& arguments) {
  const QString name = arguments[0].text();
  const Item* item = open_->find(name);
  return item ? ItemObject::valuesOf(*item) : Value();
}

Value DocumentObject::attachment(const Arguments& arguments) {
  const QHash<QString, FileObject> files = attachedFilesByKey(open_->note);
  const auto file = files.constFind(caseKey(arguments[0].text()));
  return file == files.cend() ? nothing() : newObject<EmbeddedFileObject>(open_, *file);
}

// The document's first entity, whatever item is meant.
Value DocumentObject::mimeEntity(const Arguments&) {
  if (open_->database->context->convertMime) return nothing();
  const QByteArray message = mimeMessage(open_->note);
  if (message.isEmpty()) return nothing();
  return newObject<MimeEntityObject>(MimeEntity::parse(message));
}

}  // namespace lens
