#include "embedded/model/database_object.h"

#include <QDir>

#include "embedded/design/design_notes.h"
#include "embedded/model/document_collection_object.h"
#include "embedded/model/document_object.h"
#include "notes/literals.h"

namespace lens {
namespace {

// 1 to 8 hexadecimal digits; anything else is no note ID.
bool parseNoteId(const QString& text, quint32& id) {
  if (text.isEmpty() || text.size() > 8) return false;
  for (const QChar c : text)
    if (!(c >= u'0' && c <= u'9') && !(c >= u'A' && c <= u'F') && !(c >= u'a' && c <= u'f')) return false;
  id = text.toUInt(nullptr, 16);
  return true;
}

[[noreturn]] void refuse(const QString& what, const QString& id, const Database& store) {
  throw RuntimeError(enginefault::UnknownNote,
                     u"%1: no document has the %2 \"%3\""_s.arg(store.path(), what, id));
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

Value DatabaseObject::parentOf(const std::shared_ptr<OpenDatabase>& database) {
  return newObject<DatabaseObject>(database, database->withUi ? Source::ClientSession : Source::BackEnd);
}

const MemberTable& DatabaseObject::members() const {
  static const MemberTable table{
      property<&DatabaseObject::server>(u"server"),
      property<&DatabaseObject::filePath>(u"FILEPATH"),
      property<&DatabaseObject::fileName>(u"FILENAME"),
      property<&DatabaseObject::size>(u"Size"),
      property<&DatabaseObject::title>(u"Title"),
      property<&DatabaseObject::replicaId>(u"REPLICAID"),
      property<&DatabaseObject::templateName>(u"TEMPLATENAME"),
      property<&DatabaseObject::isOpen>(u"ISOPEN"),
      property<&DatabaseObject::isPublicAddressBook>(u"ISPUBLICADDRESSBOOK"),
      property<&DatabaseObject::unprocessedDocuments>(u"UNPROCESSEDDOCUMENTS"),
      property<&DatabaseObject::views>(u"VIEWS"),
      method<&DatabaseObject::view>(u"GETVIEW", 1, 1),
      property<&DatabaseObject::agents>(u"AGENTS"),
      method<&DatabaseObject::agent>(u"GETAGENT", 1, 1),
      method<&DatabaseObject::form>(u"GETFORM", 1, 1),
      method<&DatabaseObject::profileDocuments>(u"GETPROFILEDOCCOLLECTION", 0, 1),
      method<&DatabaseObject::noteCollection>(u"CREATENOTECOLLECTION", 0, 1),
      method<&DatabaseObject::documentById>(u"GETDOCUMENTBYID", 1, 1),
      method<&DatabaseObject::documentByUnid>(u"GETDOCUMENTBYUNID", 1, 1),
      method<&DatabaseObject::search>(u"SEARCH", 3, 3),
      method<&DatabaseObject::createReplica>(u"CREATEREPLICA", 2, 2),
      method<&DatabaseObject::replicate>(u"REPLICATE", 1, 1),
      property<&DatabaseObject::remove>(u"Remove"),
      method<&DatabaseObject::fullTextSearch>(u"FTSEARCH", 2, 2),
      property<&DatabaseObject::isIndexed>(u"isIndexed"),
      property<&DatabaseObject::close>(u"Close"),
  };
  return table;
}

Database& DatabaseObject::store() const {
  if (closed_ || !database_->store)
    throw RuntimeError(modelfault::DatabaseClosed,
                       u"%1: the database is not open"_s.arg(database_->place.path));
  return *database_->store;
}

Value DatabaseObject::server() {
  return database_->place.server;
}

Value DatabaseObject::filePath() {
  return database_->place.path;
}

Value DatabaseObject::fileName() {
  const QString& path = database_->place.path;
  return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

Value DatabaseObject::size() {
  return Value(store().size());
}

// A listing asks objects that were never opened; what Close() has ended raises.
DatabaseInfo DatabaseObject::info() {
  if (closed_ || database_->store) return store().info();
  if (!peeked_) peeked_ = database_->context->workspace->infoOf(database_->place);
  return *peeked_;
}

Value DatabaseObject::title() {
  return info().title;
}

Value DatabaseObject::replicaId() {
  return info().replicaId;
}

// The master template that the design comes from, by which people find all databases of one design.
Value DatabaseObject::templateName() {
  return info().inheritsFrom;
}

Value DatabaseObject::isOpen() {
  return bool(!closed_ && database_->store && !database_->store->isRemoved());
}

// A listing of address books opens none of them: the settings name them, and one of this machine is its
// user's own. Any other database on a server is asked what it is.
Value DatabaseObject::isPublicAddressBook() {
  const DatabasePlace& place = database_->place;
  if (place.server.isEmpty()) return false;
  return database_->context->workspace->isPublicAddressBook(place) || info().publicAddressBook;
}

Value DatabaseObject::unprocessedDocuments() {
  store();
  const ClientState& client = database_->context->workspace->client();
  const bool onTop = source_ != Source::BackEnd && client.isOnTop(database_->place);
  return newObject<DocumentCollectionObject>(database_,
                                             onTop ? client.visibleSelection() : QVector<quint32>());
}

Value DatabaseObject::documentById(const Arguments& arguments) {
  const Database& notes = store();
  const QString text = arguments[0].text();
  if (text.isEmpty()) return nothing();
  quint32 id = 0;
  if (!parseNoteId(text, id) || id == 0) refuse(u"note ID"_s, text, notes);
  if (isSpecialNoteId(id)) {
    id = resolveSpecialNoteId(notes, id);
    if (id == 0) refuse(u"special note ID"_s, text, notes);
  }
  if (const Value found = DocumentObject::read(database_, id); found.object()) return found;
  // What was issued once may be gone; that is no failure, unlike an ID that never was.
  if (id > notes.notes().highestIssuedId()) refuse(u"note ID"_s, text, notes);
  return nothing();
}

Value DatabaseObject::documentByUnid(const Arguments& arguments) {
  const Database& notes = store();
  const QString text = arguments[0].text();
  Unid unid;
  if (!Unid::parse(text, unid)) refuse(u"universal ID"_s, text, notes);
  const Value found = DocumentObject::read(database_, unid);
  if (!found.object()) refuse(u"universal ID"_s, text, notes);
  return found;
}

// What came from the client's workspace is the client's own database: closing it closes its windows.
Value DatabaseObject::close() {
  closed_ = true;
  ClientState& client = database_->context->workspace->client();
  if (source_ == Source::ClientWindow && client.isOnTop(database_->place)) client.closeDatabase();
  return {};
}

}  // namespace lens
