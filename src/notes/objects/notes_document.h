// Documents, their MIME entities, and collections of documents.
#pragma once

#include "notes/objects/notes_item.h"

namespace lens {

class NotesDatabase;

class NotesMIMEEntity : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // The part of the content type before the "/".
  QString contentType() const { return get(u"CONTENTTYPE"_s).text(); }
  QString contentAsText() const { return get(u"CONTENTASTEXT"_s).text(); }
  NotesMIMEEntity firstChildEntity() const { return call(u"GETFIRSTCHILDENTITY"_s).object(); }
  NotesMIMEEntity nextSibling() const { return call(u"GETNEXTSIBLING"_s).object(); }
};

class NotesDocument : public ObjectView {
 public:
  using ObjectView::ObjectView;

  // Hexadecimal, without leading zeros.
  QString noteId() const { return get(u"NoteID"_s).text(); }
  QString universalId() const { return get(u"UNIVERSALID"_s).text(); }
  NotesDatabase parentDatabase() const;

  // Whether files are attached to it.
  bool hasEmbedded() const { return get(u"HASEMBEDDED"_s).boolean(); }
  // An array of items in the order in which they are stored.
  Value items() const { return get(u"ITEMS"_s); }
  bool hasItem(const QString& name) const { return call(u"HASITEM"_s, name).boolean(); }
  // Nothing when there is no such item.
  NotesItem firstItem(const QString& name) const { return call(u"GETFIRSTITEM"_s, name).object(); }
  // An array; Empty when there is no such item.
  Value itemValue(const QString& name) const { return call(u"GETITEMVALUE"_s, name); }
  NotesEmbeddedObject attachment(const QString& fileName) const {
    return call(u"GETATTACHMENT"_s, fileName).object();
  }
  NotesMIMEEntity mimeEntity() const { return call(u"GETMIMEENTITY"_s).object(); }

  // In memory, until it is saved.
  void replaceItemValue(const QString& name, const Value& value) const {
    call(u"REPLACEITEMVALUE"_s, name, value);
  }
  NotesRichTextItem createRichTextItem(const QString& name) const {
    return call(u"CREATERICHTEXTITEM"_s, name).object();
  }
  void removeItem(const QString& name) const { call(u"RemoveItem"_s, name); }

  void save(bool force, bool makeResponse) const { call(u"SAVE"_s, force, makeResponse); }
  void save(bool force, bool makeResponse, bool markRead) const {
    call(u"SAVE"_s, force, makeResponse, markRead);
  }
  // Saves a copy in the target at once and gives it.
  NotesDocument copyToDatabase(const NotesDatabase& target) const;
  // Removes it from its database.
  void remove(bool force) const { call(u"Remove"_s, force); }
  // Leaves no stub.
  void removePermanently(bool force) const { call(u"REMOVEPERMANENTLY"_s, force); }
};

class NotesDocumentCollection : public ObjectView {
 public:
  using ObjectView::ObjectView;

  double count() const { return get(u"count"_s).number(); }
  NotesDocument firstDocument() const { return call(u"GETFIRSTDOCUMENT"_s).object(); }
  // Nothing behind the last one.
  NotesDocument nextDocument(const NotesDocument& document) const {
    return call(u"GETNEXTDOCUMENT"_s, document).object();
  }
  // From 1.
  NotesDocument nthDocument(qint64 place) const { return call(u"GETNTHDOCUMENT"_s, place).object(); }
  // Removes the documents from their database.
  void removeAll(bool force) const { call(u"REMOVEALL"_s, force); }
};

}  // namespace lens
