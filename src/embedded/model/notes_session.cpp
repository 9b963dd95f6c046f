#include "embedded/model/notes_session.h"

#include "embedded/model/notes_db_directory.h"

namespace lens {

NotesSession::NotesSession(std::shared_ptr<ModelContext> context, Kind kind)
    : context_(std::move(context)), kind_(kind), initialized_(kind == Kind::Client) {}

const MemberTable& NotesSession::members() const {
  static const MemberTable client{
      property<&NotesSession::currentDatabase>(u"CURRENTDATABASE"),
      property<&NotesSession::notesVersion>(u"NOTESVERSION"),
      property<&NotesSession::userName>(u"USERNAME"),
      method<&NotesSession::environmentString>(u"GETENVIRONMENTSTRING", 1, 2),
      property<&NotesSession::addressBooks>(u"ADDRESSBOOKS"),
      method<&NotesSession::database>(u"GETDATABASE", 2, 3),
      method<&NotesSession::databaseDirectory>(u"GETDBDIRECTORY", 1, 1),
      // Read and written; the row of a property that has both.
      {u"CONVERTMIME", 0, 0, property<&NotesSession::convertMime>(u"").read,
       written<&NotesSession::setConvertMime>(u"").write},
  };
  static const MemberTable backEnd(client, {property<&NotesSession::initialize>(u"Initialize")});
  return kind_ == Kind::Client ? client : backEnd;
}

void NotesSession::allow(const Member& member) {
  if (initialized_ || QStringView(member.name) == u"Initialize") return;
  throw RuntimeError(modelfault::NotInitialized,
                     QStringLiteral("The session has not been initialized. Call Initialize first."));
}

Value NotesSession::currentDatabase() {
  const DatabasePlace* top = context_->workspace->client().database();
  if (kind_ == Kind::BackEnd || !top) return nothing();
  return NotesDatabase::open(context_, *top, NotesDatabase::Source::ClientSession);
}

// Programs compare the first nine characters as text, so the release has one digit.
Value NotesSession::notesVersion() {
  return Value(u"Release 9.0.1 Embedded");
}

Value NotesSession::userName() {
  return context_->workspace->userName();
}

Value NotesSession::initialize() {
  initialized_ = true;
  return {};
}

// Entries that a program makes for itself have a "$" before their name; system entries have none.
Value NotesSession::environmentString(const Arguments& arguments) {
  const bool system = arguments.size() > 1 && arguments[1].boolean();
  const QString name = arguments[0].text().trimmed();
  const Workspace& workspace = *context_->workspace;
  if (!system) return workspace.iniValue(QString(u'$' + name));
  if (name.compare(u"Directory", Qt::CaseInsensitive) == 0) return workspace.dataDirectory();
  if (name.compare(u"NotesProgram", Qt::CaseInsensitive) == 0) return workspace.programDirectory();
  return workspace.iniValue(name);
}

NotesDatabase::Source NotesSession::source() const {
  return kind_ == Kind::Client ? NotesDatabase::Source::ClientSession : NotesDatabase::Source::BackEnd;
}

Value NotesSession::addressBooks() {
  QVector<Value> books;
  for (const DatabasePlace& place : context_->workspace->addressBooks())
    books.push_back(NotesDatabase::unopened(context_, place, source()));
  return books.isEmpty() ? Value() : Value::array(std::move(books));
}

Value NotesSession::database(const Arguments& arguments) {
  const DatabasePlace place = context_->workspace->place(arguments[0].text(), arguments[1].text());
  return NotesDatabase::open(context_, place, source());
}

Value NotesSession::databaseDirectory(const Arguments& arguments) {
  return newObject<NotesDbDirectory>(context_, arguments[0].text(), source());
}

Value NotesSession::convertMime() {
  return context_->convertMime;
}

void NotesSession::setConvertMime(const Value& value) {
  context_->convertMime = value.boolean();
}

}  // namespace lens
