#include "embedded/model/document_object.h"

#include "embedded/format/case_key.h"
#include "embedded/mime/mime_entity.h"
#include "embedded/model/embedded_file_object.h"
#include "embedded/model/item_text.h"
#include "embedded/model/mime_entity_object.h"
#include "embedded/model/parent_database.h"
#include "embedded/model/rich_text_item_object.h"

namespace lens {
Value DocumentObject::read(const std::shared_ptr<OpenDatabase>& database, NoteId noteId) {
  Note note;
  return readableNote(requireStore(*database), noteId, note) ? of(database, std::move(note)) : nothing();
}

Value DocumentObject::read(const std::shared_ptr<OpenDatabase>& database, const Unid& unid) {
  Note note;
  const Database& store = requireStore(*database);
  return readable([&] { return store.notes().read(unid, note); }) ? of(database, std::move(note)) : nothing();
}

Value DocumentObject::firstReadable(const std::shared_ptr<OpenDatabase>& database,
                                    const QVector<NoteId>& notes, qsizetype place) {
  for (; place < notes.size(); ++place)
    if (const Value found = read(database, notes[place]); found.object()) return found;
  return nothing();
}

Value DocumentObject::of(const std::shared_ptr<OpenDatabase>& database, Note note) {
  auto open = std::make_shared<OpenNote>();
  open->database = database;
  open->note = std::move(note);
  return newObject<DocumentObject>(std::move(open));
}

void DocumentObject::allow(const Member&) {
  open_->requirePresent();
}

const MemberTable& DocumentObject::members() const {
  static const MemberTable table{readingMembers(), changingMembers()};
  return table;
}

Members DocumentObject::readingMembers() {
  return {
      {u"NoteID", [](DocumentObject& self) { return self.noteNumber().hexText(); }},
      {u"UNIVERSALID", [](DocumentObject& self) { return self.open_->note.header.unid.text(); }},
      // A fixed list: what a program adds or removes while it walks over it changes nothing in it.
      {u"ITEMS",
       [](DocumentObject& self) {
         const qsizetype count = self.open_->note.items.size();
         QVector<Value> items;
         items.reserve(count);
         for (qsizetype place = 0; place < count; ++place)
           items.push_back(newItemObject({self.open_, self.open_->numberAt(place)}));
         return Value::array(std::move(items));
       }},
      {u"PARENTDATABASE", [](DocumentObject& self) { return parentDatabase(self.open_->database); }},
      {u"HASEMBEDDED",
       [](DocumentObject& self) {
         FileObject file;
         for (const Item& item : std::as_const(self.open_->note).items)
           if (readAttachedFile(item, file)) return true;
         return false;
       }},
      {u"HASITEM",
       [](DocumentObject& self, const QString& name) { return self.open_->find(name) != nullptr; }},
      {u"GETFIRSTITEM",
       [](DocumentObject& self, const QString& name) {
         const Item* item = self.open_->find(name);
         if (!item) return nothing();
         const qsizetype place = item - std::as_const(self.open_->note).items.constData();
         return newItemObject({self.open_, self.open_->numberAt(place)});
       }},
      {u"GETITEMVALUE",
       [](DocumentObject& self, const QString& name) {
         const Item* item = self.open_->find(name);
         return item ? valuesOf(*item) : Value();
       }},
      {u"GETATTACHMENT",
       [](DocumentObject& self, const QString& name) {
         FileObject file;
         return findAttachedFile(self.open_->note, name, file)
                    ? newObject<EmbeddedFileObject>(self.open_, file)
                    : nothing();
       }},
      // The document's first entity, whatever item is meant.
      {u"GETMIMEENTITY",
       [](DocumentObject& self, const Value*) {
         if (self.open_->database->context->convertMime) return nothing();
         const QByteArray message = mimeMessage(self.open_->note);
         if (message.isEmpty()) return nothing();
         return newObject<MimeEntityObject>(MimeEntity::parse(message));
       }},
  };
}

}  // namespace lens
