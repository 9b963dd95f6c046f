// A document on display, as the editing commands find it: captured from the client, its rows in fldList.
#pragma once

#include <QFile>

#include "embedded/richtext/rich_text.h"
#include "support/lens_fixture.h"

namespace lens {

inline const QString kTextType = QStringLiteral("TEXT (1280) means text or text list");

class EditingTest : public LensFixture {
 protected:
  EditingTest() { openDatabase(u"mail.nsf"_s); }

  static QByteArray rich(const QString& content) {
    RichText text;
    if (!content.isEmpty()) text.appendText(content);
    return rawValue(itemtype::RichText, text.toBytes());
  }
  static Note memo(const QString& subject = QStringLiteral("Pumps")) {
    Note note = document(u"Memo"_s);
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    return note;
  }
  // Saves the note, opens it in the client and starts the program, which captures it.
  NoteId show(Note note) {
    openDocument(save(note));
    start();
    noteId = note.header.id;
    return noteId;
  }
  Note stored(NoteId id) {
    Note note;
    EXPECT_TRUE(database->notes().read(id, note));
    return note;
  }
  Note stored() { return stored(noteId); }
  // The values of an item as the object model gives them; dates by the region.
  QStringList values(const Note& note, const QString& name) {
    QStringList texts;
    const Item* item = note.find(name);
    if (!item) return {u"(missing)"_s};
    const Value all = itemValues(*item);
    if (!all.isArray()) return {u"(empty)"_s};
    for (const Value& value : all.values()) texts += textOf(value, host.regional());
    return texts;
  }
  QStringList values(const QString& name) { return values(stored(), name); }
  QString bodyText(const Note& note, const QString& name = QStringLiteral("Body")) {
    const Item* item = note.find(name);
    return item ? RichText::fromBytes(item->data()).plainText() : u"(missing)"_s;
  }
  // A row of the collection list.
  static QString idRow(NoteId id) { return id.hexText().rightJustified(8, u'0'); }
  // A body that refers to its attachment, as the client writes it.
  Note withAttachment(const QString& name, const QByteArray& bytes) {
    Note note = memo();
    attach(note, name, bytes);
    RichText body;
    body.appendAttachment(name, name);
    note.add(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
    return note;
  }
  // Presses a button as a user does: what nobody traps ends in the general report.
  void press(const char* button) { control<CommandButton>(button).click.fire(); }
  static QString typeSentence(int type) { return u"X (%1) means"_s.arg(type); }
  int saves() {
    int count = 0;
    for (const QString& name : notes().log) count += name.compare(u"SAVE", Qt::CaseInsensitive) == 0;
    return count;
  }

  NoteId noteId;
};

}  // namespace lens
