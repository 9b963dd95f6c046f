// A database with forms and documents, and the lists and boxes that the tools across them work with.
#pragma once

#include "embedded/richtext/rich_text.h"
#include "support/every_fault.h"
#include "support/lens_fixture.h"

namespace lens {

using ShownBoxes = QVector<ShownBox>;

class ToolsTest : public LensFixture {
 protected:
  ToolsTest() { openDatabase(u"mail.nsf"_s); }

  // --- notes ---
  struct FormField {
    QString name;
    QByteArray value;
    quint16 flags = 0;
  };
  // A form that lists its fields; the value of each tells its type.
  NoteId designForm(const QString& title, const QVector<FormField>& fields) {
    Note note;
    note.header.noteClass = noteclass::Form;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    QStringList names;
    for (const FormField& field : fields) names += field.name;
    note.add(u"$Fields"_s, 0, textListValue(names));
    for (const FormField& field : fields) note.add(field.name, field.flags, field.value);
    return save(note);
  }
  // A document with one item beside its form.
  NoteId memo(const QString& item = {}, const QByteArray& value = {}) {
    Note note = document(u"Memo"_s);
    if (!item.isEmpty()) note.add(item, itemflag::Summary, value);
    return save(note);
  }
  static QByteArray noTexts() { return textListValue({}); }

  // --- the window ---
  static QString digits(NoteId id) { return id.hexText().rightJustified(8, u'0'); }
  static QString row(const QString& name, NoteId id) { return name + u"  # " + digits(id); }
  void fill(const char* list, const QStringList& texts) {
    ListBox& box = control<ListBox>(list);
    box.clear();
    for (const QString& text : texts) box.addItem(text);
  }
  // The program with nothing captured but a database in the client.
  void startOnDatabase() {
    start();
    state().gDb = databaseObject();
    state().gDoc.release();
    host.boxes.clear();
    host.pointers.clear();
    notes().log.clear();
  }
  Object databaseObject() {
    return notes().create(u"Notes.NotesSession"_s).get(u"CURRENTDATABASE"_s).object();
  }
  Object documentObject(NoteId id) {
    return databaseObject().call(u"GETDOCUMENTBYID"_s, digits(id)).object();
  }
  QString content() { return text("txtFieldContent"); }
  // Presses a button as a user does: what nobody traps ends in the general report.
  void press(const char* button) { control<CommandButton>(button).click.fire(); }
  ShownBoxes boxesOf(const char* button) {
    host.boxes.clear();
    press(button);
    return host.boxes;
  }

  // --- boxes ---
  static ShownBox report(int number, const QString& description) {
    return {u"Run-time error '%1':\n\n"_s.arg(number) + description, box::Critical, {}};
  }
  static ShownBox report(int number) { return report(number, standardErrorText(number)); }
  static ShownBox listBox(const QString& description) {
    return {description, box::Critical, u"cmdChkFields"_s};
  }
  static ShownBox listBox(int number) { return listBox(standardErrorText(number)); }

  enum class Door { ObjectModel, Library };
  // Presses the button with the n-th call through the door failing, for n = 1, 2, ... until a run has no
  // n-th call; expected(n, call) tells the boxes of each. Gives the number of runs that failed.
  template <class Prepare, class Expected>
  int pressWithEveryFault(const char* button, Door door, Prepare prepare, Expected expected) {
    const QStringList& log = door == Door::ObjectModel ? notes().log : capi().log;
    const auto pressFailing = [&](int n) {
      prepare();
      host.boxes.clear();
      host.pointers.clear();
      notes().log.clear();
      capi().log.clear();
      const auto pressIt = [&] { press(button); };
      return door == Door::ObjectModel ? reachesFault(notes(), n, pressIt) : reachesFault(capi(), n, pressIt);
    };
    return withEveryFault(pressFailing, [&](int n) {
      EXPECT_EQ(host.boxes, ShownBoxes(expected(n, log[n - 1])))
          << button << ": " << log.mid(0, n).join(u' ').toStdString();
      EXPECT_EQ(engineCapi->openHandles(), 0) << button;
    });
  }
};

}  // namespace lens
