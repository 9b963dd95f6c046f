// Databases with their views, forms and collections of notes, and directories of databases.
#pragma once

#include "notes/objects/notes_document.h"

namespace lens {

class NotesView : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // Without its aliases.
  QString name() const { return get(u"Name"_s).text(); }
  // Rows at this moment, categories included.
  double entryCount() const { return get(u"ENTRYCOUNT"_s).number(); }
  QString selectionFormula() const { return get(u"SELECTIONFORMULA"_s).text(); }
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
  NotesForm form(const QString& name) const { return call(u"GETFORM"_s, name).object(); }
  NotesDocumentCollection profileDocuments() const { return call(u"GETPROFILEDOCCOLLECTION"_s).object(); }
  NotesNoteCollection createNoteCollection(bool selectAll) const {
    return call(u"CREATENOTECOLLECTION"_s, selectAll).object();
  }
  // Documents of any age; at most so many, 0 for all.
  NotesDocumentCollection search(const QString& formula, int most) const {
    return call(u"SEARCH"_s, formula, Object(), most).object();
  }
  NotesDocumentCollection fullTextSearch(const QString& query, int most) const {
    return call(u"FTSEARCH"_s, query, most).object();
  }
};

inline NotesDocument NotesDocument::copyToDatabase(const NotesDatabase& target) const {
  return call(u"COPYTODATABASE"_s, target).object();
}

inline NotesDatabase NotesDocument::parentDatabase() const {
  return get(u"PARENTDATABASE"_s).object();
}

// The databases of a server, one after the other. Nothing behind the last one.
class NotesDbDirectory : public ObjectView {
 public:
  static constexpr int kDatabasesAndTemplates = 1246;
  static constexpr int kDatabases = 1247;

  using ObjectView::ObjectView;

  NotesDatabase firstDatabase(int kind) const { return call(u"GETFIRSTDATABASE"_s, kind).object(); }
  NotesDatabase nextDatabase() const { return call(u"GETNEXTDATABASE"_s).object(); }
};

}  // namespace lens
