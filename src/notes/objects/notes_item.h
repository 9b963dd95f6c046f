// Items of a document, and what is in a rich text item.
#pragma once

#include "notes/item_types.h"
#include "notes/numbers.h"
#include "notes/objects/object_view.h"

namespace lens {

class NotesEmbeddedObject : public ObjectView {
 public:
  static constexpr int kAttachment = 1454;

  using ObjectView::ObjectView;

  double type() const { return get(u"Type"_s).number(); }
  QString name() const { return get(u"Name"_s).text(); }
  // Bytes of an attachment, as text.
  QString fileSizeText() const { return get(u"FILESIZE"_s).text(); }
  // Writes the attachment to a file; one that is there is overwritten.
  void extractFile(const QString& path) const { call(u"EXTRACTFILE"_s, path); }
};

class NotesItem : public ObjectView {
 public:
  using ObjectView::ObjectView;

  QString name() const { return get(u"Name"_s).text(); }
  // All values as one text.
  QString text() const { return get(u"Text"_s).text(); }
  Value values() const { return get(u"Values"_s); }
  double type() const { return get(u"Type"_s).number(); }
  // The type as the table of sentences has its keys.
  QString typeText() const { return get(u"Type"_s).text(); }
  // The type as a number of 16 bits, for those who choose by itemcode.
  int typeCode() const { return Int16(roundToInt32(type())); }

  bool isSummary() const { return get(kIsSummary).boolean(); }
  bool isEncrypted() const { return get(kIsEncrypted).boolean(); }
  bool isSigned() const { return get(kIsSigned).boolean(); }
  bool isProtected() const { return get(kIsProtected).boolean(); }
  void setSummary(bool flag) const { set(kIsSummary, flag); }
  void setEncrypted(bool flag) const { set(kIsEncrypted, flag); }
  void setSigned(bool flag) const { set(kIsSigned, flag); }
  void setProtected(bool flag) const { set(kIsProtected, flag); }
  // What the names in it mean; readers and authors exclude each other.
  void setReaders(bool flag) const { set(u"ISREADERS"_s, flag); }
  void setAuthors(bool flag) const { set(u"ISAUTHORS"_s, flag); }
  void setNames(bool flag) const { set(u"ISNAMES"_s, flag); }

 private:
  inline static const QString kIsSummary = u"ISSUMMARY"_s, kIsEncrypted = u"ISENCRYPTED"_s,
                              kIsSigned = u"ISSIGNED"_s, kIsProtected = u"ISPROTECTED"_s;
};

// A range of a rich text item.
class NotesRichTextRange : public ObjectView {
 public:
  static constexpr int kIgnoreCase = 1, kAllHits = 16;

  using ObjectView::ObjectView;

  // The number of hits; the options are a sum.
  double findAndReplace(const QString& search, const QString& replace, int options) const {
    return call(u"FINDANDREPLACE"_s, search, replace, options).number();
  }
};

class NotesRichTextNavigator : public ObjectView {
 public:
  static constexpr int kTextParagraph = 4;

  using ObjectView::ObjectView;

  void findFirstElement(int kind) const { call(u"FINDFIRSTELEMENT"_s, kind); }
};

class NotesRichTextItem : public NotesItem {
 public:
  using NotesItem::NotesItem;
  NotesRichTextItem() = default;
  // An item of type 1. Asking another one for what follows raises 438.
  explicit NotesRichTextItem(NotesItem item) : NotesItem(std::move(item)) {}

  // The text with line ends at this width at the latest; tabs may go.
  QString formattedText(bool stripTabs, int width) const {
    return call(u"GETFORMATTEDTEXT"_s, stripTabs, width).text();
  }
  // Asked for in just these letters, which no class of the model has: raises 438 there.
  QString formatredText(bool stripTabs, int width) const {
    return call(u"getformatredtext"_s, stripTabs, width).text();
  }
  void appendText(const QString& text) const { call(u"APPENDTEXT"_s, text); }
  // An array of objects; no array where there are none.
  Value embeddedObjects() const { return get(u"EMBEDDEDOBJECTS"_s); }
  void embedObject(int type, const QString& application, const QString& path) const {
    call(u"EMBEDOBJECT"_s, type, application, path);
  }
  NotesRichTextNavigator createNavigator() const { return call(u"CREATENAVIGATOR"_s).object(); }
  NotesRichTextRange createRange() const { return call(u"CREATERANGE"_s).object(); }
  void compact() const { call(u"COMPACT"_s); }
};

}  // namespace lens
