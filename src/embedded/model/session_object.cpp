#include "embedded/model/session_object.h"

#include "embedded/model/db_directory_object.h"
#include "notes/literals.h"

namespace lens {

SessionObject::SessionObject(std::shared_ptr<ModelContext> context, Kind kind)
    : context_(std::move(context)), kind_(kind), initialized_(kind == Kind::Client) {}

const MemberTable& SessionObject::members() const {
  static const MemberTable client{
      property<&SessionObject::currentDatabase>(u"CURRENTDATABASE"),
      property<&SessionObject::notesVersion>(u"NOTESVERSION"),
      property<&SessionObject::userName>(u"USERNAME"),
      method<&SessionObject::environmentString>(u"GETENVIRONMENTSTRING", 1, 2),
      property<&SessionObject::addressBooks>(u"ADDRESSBOOKS"),
      method<&SessionObject::database>(u"GETDATABASE", 2, 3),
      method<&SessionObject::databaseDirectory>(u"GETDBDIRECTORY", 1, 1),
      // Read and written; the row of a property that has both.
      {u"CONVERTMIME", 0, 0, property<&SessionObject::convertMime>(u"").read,
       written<&SessionObject::setConvertMime>(u"").write},
  };
  static const MemberTable backEnd(client, {property<&SessionObject::initialize>(u"Initialize")});
  return kind_ == Kind::Client ? client : backEnd;
}

void SessionObject::allow(const Member& member) {
  if (initialized_ || QStringView(member.name) == u"Initialize") return;
  throw RuntimeError(modelfault::NotInitialized,
                     u"The session has not been initialized. Call Initialize first."_s);
}

Value SessionObject::currentDatabase() {
  const DatabasePlace* top = context_->workspace->client().database();
  if (kind_ == Kind::BackEnd || !top) return nothing();
  return DatabaseObject::open(context_, *top, DatabaseObject::Source::ClientSession);
}

// Programs compare the first nine characters as text, so the release has one digit.
Value SessionObject::notesVersion() {
  return Value(u"Release 9.0.1 Embedded");
}

Value SessionObject::userName() {
  return context_->workspace->userName();
}

Value SessionObject::initialize() {
  initialized_ = true;
  return {};
}

// Entries that a program makes for itself have a "$" before their name; system entries have none.
Value SessionObject::environmentString(const Arguments& arguments) {
  const bool system = arguments.size() > 1 && arguments[1].boolean();
  const QString name = arguments[0].text().trimmed();
  const Workspace& workspace = *context_->workspace;
  if (!system) return workspace.iniValue(QString(u'$' + name));
  if (name.compare(u"Directory", Qt::CaseInsensitive) == 0) return workspace.dataDirectory();
  if (name.compare(u"NotesProgram", Qt::CaseInsensitive) == 0) return workspace.programDirectory();
  return workspace.iniValue(name);
}

DatabaseObject::Source SessionObject::source() const {
  return kind_ == Kind::Client ? DatabaseObject::Source::ClientSession : DatabaseObject::Source::BackEnd;
}

Value SessionObject::addressBooks() {
  QVector<Value> books;
  for (const DatabasePlace& place : context_->workspace->addressBooks())
    books.push_back(DatabaseObject::unopened(context_, place, source()));
  return books.isEmpty() ? Value() : Value::array(std::move(books));
}

Value SessionObject::database(const Arguments& arguments) {
  const DatabasePlace place = context_->workspace->place(arguments[0].text(), arguments[1].text());
  return DatabaseObject::open(context_, place, source());
}

Value SessionObject::databaseDirectory(const Arguments& arguments) {
  return newObject<DbDirectoryObject>(context_, arguments[0].text(), source());
}

Value SessionObject::convertMime() {
  return context_->convertMime;
}

void SessionObject::setConvertMime(const Value& value) {
  context_->convertMime = value.boolean();
}

}  // namespace lens
