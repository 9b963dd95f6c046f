#include "embedded/model/notes_database.h"

#include <QDir>

#include "embedded/model/notes_document.h"
#include "embedded/model/notes_document_collection.h"
#include "embedded/views/design_notes.h"

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
                     QStringLiteral("%1: no document has the %2 \"%3\"").arg(store.path(), what, id));
}

}  // namespace

std::shared_ptr<OpenDatabase> NotesDatabase::openStore(const std::shared_ptr<ModelContext>& context,
                                                       const DatabasePlace& place, bool withUi) {
  auto database = std::make_shared<OpenDatabase>();
  database->context = context;
  database->place = place;
  database->store = context->workspace->database(place.server, place.path);
  database->withUi = withUi;
  return database;
}

Value NotesDatabase::open(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                          Source source) {
  return newObject<NotesDatabase>(openStore(context, place, source != Source::BackEnd), source);
}

Value NotesDatabase::openIfPossible(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                                    Source source) {
  try {
    return open(context, place, source);
  } catch (const RuntimeError&) {
    return unopened(context, place, source);
  }
}

Value NotesDatabase::unopened(const std::shared_ptr<ModelContext>& context, const DatabasePlace& place,
                              Source source) {
  auto closed = std::make_shared<OpenDatabase>();
  closed->context = context;
  closed->place = place;
  closed->withUi = source != Source::BackEnd;
  return newObject<NotesDatabase>(closed, source);
}

Value NotesDatabase::parentOf(const std::shared_ptr<OpenDatabase>& database) {
  return newObject<NotesDatabase>(database, database->withUi ? Source::ClientSession : Source::BackEnd);
}

const MemberTable& NotesDatabase::members() const {
  static const MemberTable table{
      property<&NotesDatabase::server>(u"server"),
      property<&NotesDatabase::filePath>(u"FILEPATH"),
      property<&NotesDatabase::fileName>(u"FILENAME"),
      property<&NotesDatabase::size>(u"Size"),
      property<&NotesDatabase::title>(u"Title"),
      property<&NotesDatabase::replicaId>(u"REPLICAID"),
      property<&NotesDatabase::templateName>(u"TEMPLATENAME"),
      property<&NotesDatabase::isOpen>(u"ISOPEN"),
      property<&NotesDatabase::isPublicAddressBook>(u"ISPUBLICADDRESSBOOK"),
      property<&NotesDatabase::unprocessedDocuments>(u"UNPROCESSEDDOCUMENTS"),
      property<&NotesDatabase::views>(u"VIEWS"),
      method<&NotesDatabase::view>(u"GETVIEW", 1, 1),
      property<&NotesDatabase::agents>(u"AGENTS"),
      method<&NotesDatabase::agent>(u"GETAGENT", 1, 1),
      method<&NotesDatabase::form>(u"GETFORM", 1, 1),
      method<&NotesDatabase::profileDocuments>(u"GETPROFILEDOCCOLLECTION", 0, 1),
      method<&NotesDatabase::noteCollection>(u"CREATENOTECOLLECTION", 0, 1),
      method<&NotesDatabase::documentById>(u"GETDOCUMENTBYID", 1, 1),
      method<&NotesDatabase::documentByUnid>(u"GETDOCUMENTBYUNID", 1, 1),
      method<&NotesDatabase::search>(u"SEARCH", 3, 3),
      method<&NotesDatabase::createReplica>(u"CREATEREPLICA", 2, 2),
      method<&NotesDatabase::replicate>(u"REPLICATE", 1, 1),
      property<&NotesDatabase::remove>(u"Remove"),
      method<&NotesDatabase::fullTextSearch>(u"FTSEARCH", 2, 2),
      property<&NotesDatabase::isIndexed>(u"isIndexed"),
      property<&NotesDatabase::close>(u"Close"),
  };
  return table;
}

Database& NotesDatabase::store() const {
  if (closed_ || !database_->store)
    throw RuntimeError(modelfault::DatabaseClosed,
                       QStringLiteral("%1: the database is not open").arg(database_->place.path));
  return *database_->store;
}

Value NotesDatabase::server() {
  return database_->place.server;
}

Value NotesDatabase::filePath() {
  return database_->place.path;
}

Value NotesDatabase::fileName() {
  const QString& path = database_->place.path;
  return path.mid(path.lastIndexOf(QDir::separator()) + 1);
}

Value NotesDatabase::size() {
  return Value(store().size());
}

// A listing asks objects that were never opened; what Close() has ended raises.
DatabaseInfo NotesDatabase::info() {
  if (closed_ || database_->store) return store().info();
  if (!peeked_) peeked_ = database_->context->workspace->infoOf(database_->place);
  return *peeked_;
}

Value NotesDatabase::title() {
  return info().title;
}

Value NotesDatabase::replicaId() {
  return info().replicaId;
}

// The master template that the design comes from, by which people find all databases of one design.
Value NotesDatabase::templateName() {
  return info().inheritsFrom;
}

Value NotesDatabase::isOpen() {
  return bool(!closed_ && database_->store && !database_->store->isRemoved());
}

// A listing of address books opens none of them: the settings name them, and one of this machine is its
// user's own. Any other database on a server is asked what it is.
Value NotesDatabase::isPublicAddressBook() {
  const DatabasePlace& place = database_->place;
  if (place.server.isEmpty()) return false;
  return database_->context->workspace->isPublicAddressBook(place) || info().publicAddressBook;
}

Value NotesDatabase::unprocessedDocuments() {
  store();
  const ClientState& client = database_->context->workspace->client();
  const bool onTop = source_ != Source::BackEnd && client.isOnTop(database_->place);
  return newObject<NotesDocumentCollection>(database_,
                                            onTop ? client.visibleSelection() : QVector<quint32>());
}

Value NotesDatabase::documentById(const Arguments& arguments) {
  const Database& notes = store();
  const QString text = arguments[0].text();
  if (text.isEmpty()) return nothing();
  quint32 id = 0;
  if (!parseNoteId(text, id) || id == 0) refuse(QStringLiteral("note ID"), text, notes);
  if (isSpecialNoteId(id)) {
    id = resolveSpecialNoteId(notes, id);
    if (id == 0) refuse(QStringLiteral("special note ID"), text, notes);
  }
  if (const Value found = NotesDocument::read(database_, id); found.object()) return found;
  // What was issued once may be gone; that is no failure, unlike an ID that never was.
  if (id > notes.highestIssuedId()) refuse(QStringLiteral("note ID"), text, notes);
  return nothing();
}

Value NotesDatabase::documentByUnid(const Arguments& arguments) {
  const Database& notes = store();
  const QString text = arguments[0].text();
  Unid unid;
  if (!Unid::parse(text, unid)) refuse(QStringLiteral("universal ID"), text, notes);
  const Value found = NotesDocument::read(database_, unid);
  if (!found.object()) refuse(QStringLiteral("universal ID"), text, notes);
  return found;
}

// What came from the client's workspace is the client's own database: closing it closes its windows.
Value NotesDatabase::close() {
  closed_ = true;
  ClientState& client = database_->context->workspace->client();
  if (source_ == Source::ClientWindow && client.isOnTop(database_->place)) client.closeDatabase();
  return {};
}

}  // namespace lens
