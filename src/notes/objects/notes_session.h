// What a gateway makes: sessions, and the client's workspace with what is on its screen.
#pragma once

#include "notes/objects/notes_database.h"

namespace lens {

class NotesSession : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // A session of the running client.
  static NotesSession ofClient(Gateway& notes) { return notes.create(u"Notes.NotesSession"_s); }
  // A session that needs no running client; it is to be initialized.
  static NotesSession ofBackEnd(Gateway& notes) { return notes.create(u"Lotus.NotesSession"_s); }

  void initialize() const { call(u"Initialize"_s); }
  QString userName() const { return get(u"USERNAME"_s).text(); }
  QString notesVersion() const { return get(u"NOTESVERSION"_s).text(); }
  QString environmentString(const QString& name, bool isSystem) const {
    return call(u"GETENVIRONMENTSTRING"_s, name, isSystem).text();
  }
  // Whether messages come as rich text.
  void setConvertMime(bool flag) const { set(u"CONVERTMIME"_s, flag); }

  // The database that is open in the client, or nothing.
  NotesDatabase currentDatabase() const { return get(u"CURRENTDATABASE"_s).object(); }
  // A server without a name is this machine.
  NotesDatabase database(const QString& server, const QString& path) const {
    return call(u"GETDATABASE"_s, server, path).object();
  }
  // An array of databases that are not open.
  Value addressBooks() const { return get(u"ADDRESSBOOKS"_s); }
  NotesDbDirectory dbDirectory(const QString& server) const {
    return call(u"GETDBDIRECTORY"_s, server).object();
  }
};

// A document on the client's screen.
class NotesUIDocument : public ObjectView {
 public:
  using ObjectView::ObjectView;

  NotesDocument document() const { return get(u"DOCUMENT"_s).object(); }
  void close() const { call(u"Close"_s); }
};

class NotesUIWorkspace : public ObjectView {
 public:
  using ObjectView::ObjectView;

  static NotesUIWorkspace of(Gateway& notes) { return notes.create(u"Notes.NotesUIWorkSpace"_s); }

  // The document that is open in the client, or nothing.
  NotesUIDocument currentDocument() const { return get(u"CURRENTDOCUMENT"_s).object(); }
  // The database that is open in the client, or nothing.
  NotesDatabase currentDatabase() const { return get(u"CURRENTDATABASE"_s).object(); }
  void openDatabase(const QString& server, const QString& path) const {
    call(u"OPENDATABASE"_s, server, path);
  }
  void viewRefresh() const { call(u"VIEWREFRESH"_s); }
};

}  // namespace lens
