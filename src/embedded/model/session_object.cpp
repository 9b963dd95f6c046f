#include "embedded/model/session_object.h"

#include "embedded/model/db_directory_object.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Entries that a program makes for itself have a "$" before their name; system entries have none.
QString environmentString(const Workspace& workspace, const QString& name, bool system) {
  if (!system) return workspace.iniValue(QString(u'$' + name));
  if (name.compare(u"Directory", Qt::CaseInsensitive) == 0) return workspace.dataDirectory();
  if (name.compare(u"NotesProgram", Qt::CaseInsensitive) == 0) return workspace.programDirectory();
  return workspace.iniValue(name);
}

}  // namespace

SessionObject::SessionObject(std::shared_ptr<ModelContext> context, Kind kind)
    : context_(std::move(context)), kind_(kind), initialized_(kind == Kind::Client) {}

const MemberTable& SessionObject::members() const {
  static const MemberTable client{clientMembers()};
  static const MemberTable backEnd{
      clientMembers(), Members{{u"Initialize", [](SessionObject& self) { self.initialized_ = true; }}}};
  return kind_ == Kind::Client ? client : backEnd;
}

void SessionObject::allow(const Member& member) {
  if (initialized_ || QStringView(member.name) == u"Initialize") return;
  throw RuntimeError(modelfault::NotInitialized,
                     u"The session has not been initialized. Call Initialize first."_s);
}

DatabaseObject::Source SessionObject::source() const {
  return kind_ == Kind::Client ? DatabaseObject::Source::ClientSession : DatabaseObject::Source::BackEnd;
}

Members SessionObject::clientMembers() {
  return {
      {u"CURRENTDATABASE",
       [](SessionObject& self) {
         const DatabasePlace* top = self.context_->workspace->client().database();
         if (self.kind_ == Kind::BackEnd || !top) return nothing();
         return DatabaseObject::open(self.context_, *top, DatabaseObject::Source::ClientSession);
       }},
      // Programs compare the first nine characters as text, so the release has one digit.
      {u"NOTESVERSION", [](SessionObject&) { return u"Release 9.0.1 Embedded"_s; }},
      {u"USERNAME", [](SessionObject& self) { return self.context_->workspace->userName(); }},
      {u"GETENVIRONMENTSTRING",
       [](SessionObject& self, const Value& name, const Value* system) {
         const bool ofSystem = system && system->boolean();
         return environmentString(*self.context_->workspace, name.text().trimmed(), ofSystem);
       }},
      {u"ADDRESSBOOKS",
       [](SessionObject& self) {
         QVector<Value> books;
         for (const DatabasePlace& place : self.context_->workspace->addressBooks())
           books.push_back(DatabaseObject::unopened(self.context_, place, self.source()));
         return books.isEmpty() ? Value() : Value::array(std::move(books));
       }},
      {u"GETDATABASE",
       [](SessionObject& self, const QString& server, const QString& path, const Value*) {
         const DatabasePlace place = self.context_->workspace->place(server, path);
         return DatabaseObject::open(self.context_, place, self.source());
       }},
      {u"GETDBDIRECTORY",
       [](SessionObject& self, const QString& server) {
         return newObject<DbDirectoryObject>(self.context_, server, self.source());
       }},
      {u"CONVERTMIME", [](SessionObject& self) { return self.context_->convertMime; },
       [](SessionObject& self, bool on) { self.context_->convertMime = on; }},
  };
}

}  // namespace lens
