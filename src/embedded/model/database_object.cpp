#include "embedded/model/database_object.h"

#include <QDir>

#include "embedded/design/design_notes.h"
#include "embedded/model/document_collection_object.h"
#include "embedded/model/document_object.h"
#include "embedded/model/parent_database.h"
#include "notes/literals.h"

namespace lens {
namespace {

// 1 to 8 hexadecimal digits; anything else is no note ID.
bool parseNoteId(const QString& text, NoteId& id) {
  if (text.isEmpty() || text.size() > 8) return false;
  for (const QChar c : text)
    if (!(c >= u'0' && c <= u'9') && !(c >= u'A' && c <= u'F') && !(c >= u'a' && c <= u'f')) return false;
  id = NoteId(text.toUInt(nullptr, 16));
  return true;
}

[[noreturn]] void refuse(const QString& what, const QString& id, const Database& store) {
  throw RuntimeError(enginefault::UnknownNote,
                     u"%1: no document has the %2 \"%3\""_s.arg(store.path(), what, id));
}

Value documentOfNoteId(const std::shared_ptr<OpenDatabase>& database, const QString& text) {
  const Database& notes = *database->store;
  if (text.isEmpty()) return nothing();
  NoteId id;
  if (!parseNoteId(text, id) || id.isNull()) refuse(u"note ID"_s, text, notes);
  if (isSpecialNoteId(id)) {
    id = resolveSpecialNoteId(notes, id);
    if (id.isNull()) refuse(u"special note ID"_s, text, notes);
  }
  if (const Value found = DocumentObject::read(database, id); found.object()) return found;
  // What was issued once may be gone; that is no failure, unlike an ID that never was.
  if (id > notes.notes().highestIssuedId()) refuse(u"note ID"_s, text, notes);
  return nothing();
}

}  // namespace

std::shared_ptr<OpenDatabase> DatabaseObject::openStore(const std::shared_ptr<ModelContext>& context,
                                                        const DatabasePlace& place, bool withUi) {
  auto database = std::make_shared<OpenDatabase>();
  database->context = context;
  database->place = place;
  database->store = context->workspace->database(place.server, place.path);
  database->withUi = withUi;
  return database;
}

Value DatabaseObject::open(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                           Source source) {
  return newObject<DatabaseObject>(openStore(context, place, source != Source::BackEnd), source);
}

Value DatabaseObject::openIfPossible(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                                     Source source) {
  try {
    return open(context, place, source);
  } catch (const RuntimeError&) {
    return unopened(context, place, source);
  }
}

Value DatabaseObject::unopened(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                               Source source) {
  auto closed = std::make_shared<OpenDatabase>();
  closed->context = context;
  closed->place = place;
  closed->withUi = source != Source::BackEnd;
  return newObject<DatabaseObject>(closed, source);
}

Value parentDatabase(const std::shared_ptr<OpenDatabase>& database) {
  using Source = DatabaseObject::Source;
  return newObject<DatabaseObject>(database, database->withUi ? Source::ClientSession : Source::BackEnd);
}

std::shared_ptr<OpenDatabase> databaseBehind(const Value& argument) {
  const auto object = argumentAs<DatabaseObject>(argument);
  return object ? object->opened() : nullptr;
}

Database& DatabaseObject::store() const {
  if (closed_ || !database_->store)
    throw RuntimeError(modelfault::DatabaseClosed,
                       u"%1: the database is not open"_s.arg(database_->place.path));
  return *database_->store;
}

// A listing asks objects that were never opened; what Close() has ended raises.
DatabaseInfo DatabaseObject::info() {
  if (closed_ || database_->store) return store().info();
  if (!peeked_) peeked_ = database_->context->workspace->infoOf(database_->place);
  return *peeked_;
}

const MemberTable& DatabaseObject::members() const {
  static const MemberTable table{propertyMembers(), documentMembers(), designMembers(), searchMembers(),
                                 replicaMembers()};
  return table;
}

Members DatabaseObject::propertyMembers() {
  return {
      {u"server", [](DatabaseObject& self) { return self.database_->place.server; }},
      {u"FILEPATH", [](DatabaseObject& self) { return self.database_->place.path; }},
      {u"FILENAME",
       [](DatabaseObject& self) {
         const QString& path = self.database_->place.path;
         return path.mid(path.lastIndexOf(QDir::separator()) + 1);
       }},
      {u"Size", [](DatabaseObject& self) { return self.store().size(); }},
      {u"Title", [](DatabaseObject& self) { return self.info().title; }},
      {u"REPLICAID", [](DatabaseObject& self) { return self.info().replicaId; }},
      // The master template that the design comes from, by which people find all databases of one design.
      {u"TEMPLATENAME", [](DatabaseObject& self) { return self.info().inheritsFrom; }},
      {u"ISOPEN",
       [](DatabaseObject& self) {
         const std::shared_ptr<Database>& store = self.database_->store;
         return !self.closed_ && store && !store->isRemoved();
       }},
      // A listing of address books opens none of them: the settings name them, and one of this machine is
      // its user's own. Any other database on a server is asked what it is.
      {u"ISPUBLICADDRESSBOOK",
       [](DatabaseObject& self) {
         const DatabasePlace& place = self.database_->place;
         if (place.server.isEmpty()) return false;
         return self.database_->context->workspace->isPublicAddressBook(place) ||
                self.info().publicAddressBook;
       }},
      // What came from the client's workspace is the client's own database: closing it closes its windows.
      {u"Close",
       [](DatabaseObject& self) {
         self.closed_ = true;
         ClientState& client = self.database_->context->workspace->client();
         if (self.source_ == Source::ClientWindow && client.isOnTop(self.database_->place))
           client.closeDatabase();
       }},
  };
}

Members DatabaseObject::documentMembers() {
  return {
      {u"UNPROCESSEDDOCUMENTS",
       [](DatabaseObject& self) {
         self.store();
         const ClientState& client = self.database_->context->workspace->client();
         const bool onTop = self.source_ != Source::BackEnd && client.isOnTop(self.database_->place);
         return newObject<DocumentCollectionObject>(self.database_,
                                                    onTop ? client.visibleSelection() : QVector<NoteId>());
       }},
      {u"GETDOCUMENTBYID",
       [](DatabaseObject& self, const Value& text) {
         self.store();
         return documentOfNoteId(self.database_, text.text());
       }},
      {u"GETDOCUMENTBYUNID",
       [](DatabaseObject& self, const Value& value) {
         const Database& notes = self.store();
         const QString text = value.text();
         Unid unid;
         if (!Unid::parse(text, unid)) refuse(u"universal ID"_s, text, notes);
         const Value found = DocumentObject::read(self.database_, unid);
         if (!found.object()) refuse(u"universal ID"_s, text, notes);
         return found;
       }},
  };
}

}  // namespace lens
