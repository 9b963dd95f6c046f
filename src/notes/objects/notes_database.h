// Databases with their views, forms, agents and collections of notes, and directories of databases.
#pragma once

#include "notes/objects/notes_document.h"

namespace lens {

// A row of a view: a document, or a category above documents.
class NotesViewEntry : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // False for a category, and for a document that has gone since the rows were taken.
  bool isDocument() const { return get(u"ISDOCUMENT"_s).boolean(); }
  NotesDocument document() const { return get(u"DOCUMENT"_s).object(); }
};

// The rows of a view as they were at one moment.
class NotesViewEntryCollection : public ObjectView {
 public:
  using ObjectView::ObjectView;

  double count() const { return get(u"count"_s).number(); }
  NotesViewEntry firstEntry() const { return call(u"GETFIRSTENTRY"_s).object(); }
  // Nothing behind the last one.
  NotesViewEntry nextEntry(const NotesViewEntry& entry) const {
    return call(u"GETNEXTENTRY"_s, entry).object();
  }
  // Removes the documents of all rows from their database.
  void removeAll(bool force) const { call(u"REMOVEALL"_s, force); }
};

class NotesView : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // Without its aliases.
  QString name() const { return get(u"Name"_s).text(); }
  // Rows at this moment, categories included.
  double entryCount() const { return get(u"ENTRYCOUNT"_s).number(); }
  // Taken anew each time.
  NotesViewEntryCollection allEntries() const { return get(u"ALLENTRIES"_s).object(); }

  QString selectionFormula() const { return get(u"SELECTIONFORMULA"_s).text(); }
  // The first document whose value in the first sorted column begins with the key, or is the key as a whole;
  // nothing without one.
  NotesViewEntry entryByKey(const QString& key, bool whole) const {
    return call(u"GETENTRYBYKEY"_s, key, whole).object();
  }
  NotesDocument firstDocument() const { return call(u"GETFIRSTDOCUMENT"_s).object(); }
  // Nothing behind the last one.
  NotesDocument nextDocument(const NotesDocument& document) const {
    return call(u"GETNEXTDOCUMENT"_s, document).object();
  }
};

class NotesAgent : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // With its aliases, parted by "|".
  QString name() const { return get(u"Name"_s).text(); }
  // On this machine, over the documents that its settings select.
  void run() const { call(u"RUN"_s); }
};

class NotesForm : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // An array of names.
  Value fields() const { return get(u"FIELDS"_s); }
  double fieldType(const Value& name) const { return call(u"GETFIELDTYPE"_s, name).number(); }
};

// Classes of notes are switched on, then the collection is built and walked by note IDs.
class NotesNoteCollection : public ObjectView {
 public:
  using ObjectView::ObjectView;

  void selectAllNotes(bool flag) const { call(u"SELECTALLNOTES"_s, flag); }
  // A class by the name of its property, as lists of classes hold it.
  void select(const QString& property, bool flag) const { set(property, flag); }
  void buildCollection() const { call(u"BUILDCOLLECTION"_s); }
  double count() const { return get(u"count"_s).number(); }
  // Empty when there is none.
  QString firstNoteId() const { return call(u"GETFIRSTNOTEID"_s).text(); }
  QString nextNoteId(const QString& noteId) const { return call(u"GETNEXTNOTEID"_s, noteId).text(); }
};

class NotesDatabase : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // Canonical name of its server, empty for this machine.
  QString server() const { return get(u"server"_s).text(); }
  QString filePath() const { return get(u"FILEPATH"_s).text(); }
  QString fileName() const { return get(u"FileName"_s).text(); }
  QString title() const { return get(u"Title"_s).text(); }
  // The master template that its design comes from; empty without one.
  QString templateName() const { return get(u"TEMPLATENAME"_s).text(); }
  // Bytes, as text.
  QString sizeText() const { return get(u"Size"_s).text(); }
  bool isOpen() const { return get(u"ISOPEN"_s).boolean(); }
  // Of the client's database: closes it and its documents; otherwise this object alone.
  void close() const { call(u"Close"_s); }
  bool isPublicAddressBook() const { return get(u"ISPUBLICADDRESSBOOK"_s).boolean(); }
  // What is selected in the client's view.
  NotesDocumentCollection unprocessedDocuments() const { return get(u"UNPROCESSEDDOCUMENTS"_s).object(); }

  // Hexadecimal; the model raises or gives nothing for a note that is not there.
  NotesDocument documentById(const QString& noteId) const {
    return call(u"GETDOCUMENTBYID"_s, noteId).object();
  }
  NotesDocument documentByUnid(const QString& unid) const {
    return call(u"GETDOCUMENTBYUNID"_s, unid).object();
  }
  // An array of views and folders.
  Value views() const { return get(u"VIEWS"_s); }
  // An array of agents; Empty when there are none.
  Value agents() const { return get(u"AGENTS"_s); }
  NotesView view(const QString& name) const { return call(u"GETVIEW"_s, name).object(); }
  // Nothing when there is none of that name.
  NotesAgent agent(const QString& name) const { return call(u"GETAGENT"_s, name).object(); }
  NotesForm form(const QString& name) const { return call(u"GETFORM"_s, name).object(); }
  NotesDocumentCollection profileDocuments() const { return call(u"GETPROFILEDOCCOLLECTION"_s).object(); }
  NotesNoteCollection createNoteCollection(bool selectAll) const {
    return call(u"CREATENOTECOLLECTION"_s, selectAll).object();
  }
  // Documents of any age; at most so many, 0 for all.
  NotesDocumentCollection search(const QString& formula, int most) const {
    return call(u"SEARCH"_s, formula, Object(), most).object();
  }
  // Whether it has a full-text index.
  bool isIndexed() const { return get(u"isIndexed"_s).boolean(); }
  NotesDocumentCollection fullTextSearch(const QString& query, int most) const {
    return call(u"FTSEARCH"_s, query, most).object();
  }

  // 16 hexadecimal digits that all replicas have in common.
  QString replicaId() const { return get(u"REPLICAID"_s).text(); }
  // Raises when there is a file at the path.
  NotesDatabase createReplica(const QString& server, const QString& path) const {
    return call(u"CREATEREPLICA"_s, server, path).object();
  }
  // Both ways, with every other replica on that server.
  void replicate(const QString& server) const { call(u"REPLICATE"_s, server); }
  // Deletes its file.
  void remove() const { call(u"Remove"_s); }
};

inline NotesDatabase NotesDocument::parentDatabase() const {
  return get(u"PARENTDATABASE"_s).object();
}

inline NotesDocument NotesDocument::copyToDatabase(const NotesDatabase& target) const {
  return call(u"COPYTODATABASE"_s, target).object();
}

// The databases of a server, one after the other. Nothing behind the last one.
class NotesDbDirectory : public ObjectView {
 public:
  static constexpr int kDatabasesAndTemplates = 1246;
  static constexpr int kDatabases = 1247;

  using ObjectView::ObjectView;

  NotesDatabase firstDatabase(int kind) const { return call(u"GETFIRSTDATABASE"_s, kind).object(); }
  NotesDatabase nextDatabase() const { return call(u"GETNEXTDATABASE"_s).object(); }
  // One that is not open when the server has no replica of that ID.
  NotesDatabase openByReplicaId(const QString& replicaId) const {
    return call(u"OpenDatabaseByReplicaID"_s, replicaId).object();
  }
};

}  // namespace lens
