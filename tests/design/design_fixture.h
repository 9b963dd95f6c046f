// A database with notes of many classes, and the lists of the main window.
#pragma once

#include <sqlite3.h>

#include "support/lens_fixture.h"

namespace lens {

using Boxes = QVector<ShownBox>;

class DesignTest : public LensFixture {
 protected:
  DesignTest() { openDatabase(u"mail.nsf"_s); }

  // --- notes ---
  static Note noteWith(const QString& item, const QByteArray& value,
                       quint16 noteClass = noteclass::Document) {
    Note note;
    note.header.noteClass = noteClass;
    note.add(item, itemflag::Summary, value);
    return note;
  }
  NoteId saved(Note note) { return save(note); }
  NoteId design(quint16 noteClass, const QString& title, const QString& flags = QString()) {
    Note note = noteWith(u"$TITLE"_s, textValue(title), noteClass);
    if (!flags.isEmpty()) note.add(u"$Flags"_s, itemflag::Summary, textValue(flags));
    return save(note);
  }
  static QString profileName(const QString& name) {
    return u"$profile_%1%2_"_s.arg(name.size(), 3, 10, QChar(u'0')).arg(name);
  }
  NoteId profile(const QString& name) { return saved(noteWith(u"$Name"_s, textValue(profileName(name)))); }
  NoteId memo() { return saved(document(u"Memo"_s)); }
  // The note keeps its ID, but nothing can read its items any more.
  void damage(NoteId id) {
    const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(id.value());
    ASSERT_EQ(sqlite3_exec(database->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    ASSERT_EQ(database->notes().state(id), NoteState::Damaged);
  }
  NoteId damaged() {
    const NoteId id = memo();
    damage(id);
    return id;
  }

  // --- rows ---
  static QString digits(NoteId id) { return id.hexText().rightJustified(8, u'0'); }
  static QString row(const QString& name, NoteId id) { return name + u"  # " + digits(id); }
  static QString profileRow(const QString& name, NoteId id) { return row(profileName(name), id); }
  // Fills idList by hand and marks every row.
  void markRows(const QStringList& texts) {
    ListBox& list = control<ListBox>("idList");
    list.clear();
    for (const QString& text : texts) list.addItem(text);
    for (int i = 0; i < list.listCount(); ++i) list.setSelected(i, true);
  }
  QStringList markedRows() {
    ListBox& list = control<ListBox>("idList");
    QStringList marked;
    for (int i = 0; i < list.listCount(); ++i)
      if (list.selected(i)) marked += list.list(i);
    return marked;
  }

  // --- what the user does ---
  void choose(const QString& entry) { selectRow("lstDesigns", entry); }
  void doubleClick() { control<ListBox>("lstDesigns").dblClick.fire(); }
  void list(const QString& entry) {
    choose(entry);
    doubleClick();
  }
  void press(const char* button) { control<CommandButton>(button).click.fire(); }

  // --- the doors ---
  int callsOf(const QString& name) { return int(notes().log.filter(name, Qt::CaseInsensitive).size()); }
  // The object model's document of a note, for replies.
  Object documentObject(NoteId id) {
    const Object session = notes().create(u"Notes.NotesSession"_s);
    const Object mail = session.get(u"CURRENTDATABASE"_s).object();
    return mail.call(u"GETDOCUMENTBYID"_s, digits(id)).object();
  }
  static ShownBox errorBox(const QString& procedure, int number, const QString& description) {
    return {
        u"Error %1 ("_s.arg(number) + description + u") in procedure " + procedure + u" of Formular Form1",
        box::Plain,
        {}};
  }
  static ShownBox errorBox(const QString& procedure, int number) {
    return errorBox(procedure, number, standardErrorText(number));
  }
  static ShownBox noDatabaseBox() { return {u"Cann't open DB try again"_s, box::Plain, {}}; }
};

}  // namespace lens
