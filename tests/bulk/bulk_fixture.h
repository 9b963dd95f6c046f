// What the tests of the bulk tool share, and its window and desk without the application: what one of its
// classes works with, on a workspace in a temporary directory.
//
//   BulkTest        lists, boxes and sounds, whatever the window stands on
//   ReplicDeskTest  a window with its desk: a test constructs the class that it is about and fills the lists
//   by hand OperationsTest  a source, a target and the operations on them (operations_fixture.h) ShownReplic
//   the window over the main window, from its opening on (shown_replic.h)
#pragma once

#include <QDir>
#include <QFile>

#include "bulk/replic_desk.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/search/full_text.h"
#include "support/every_fault.h"
#include "support/lens_fixture.h"

namespace lens {

class BulkTest : public LensFixture {
 protected:
  // --- lists ---
  static void fill(ListBox& list, const QStringList& texts) {
    list.clear();
    for (const QString& text : texts) list.addItem(text);
  }
  static void fillMarked(ListBox& list, const QStringList& texts) {
    fill(list, texts);
    for (int row = 0; row < list.listCount(); ++row) list.setSelected(row, true);
  }
  template <class Control>
  static QStringList rowsOf(const Control& list) {
    QStringList rows;
    for (int row = 0; row < list.listCount(); ++row) rows += list.list(row);
    return rows;
  }
  static QStringList markedRowsOf(const ListBox& list) {
    QStringList rows;
    for (int row = 0; row < list.listCount(); ++row)
      if (list.selected(row)) rows += list.list(row);
    return rows;
  }
  // As a user does: what nobody traps ends in the general report.
  static void press(CommandButton* button) { button->click.fire(); }

  // --- what was shown and heard ---
  using Boxes = QVector<ShownBox>;
  static ShownBox report(int number, const QString& description) {
    return {u"Run-time error '%1':\n\n"_s.arg(number) + description, box::Critical, {}};
  }
  static ShownBox report(int number) { return report(number, standardErrorText(number)); }
  // Puts the sound beside the program, which is played at the end of a run.
  void provideSound() {
    QDir().mkpath(host.programDir);
    QFile file(host.programDir + u"/done.wav");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
};

class ReplicDeskTest : public BulkTest {
 protected:
  ReplicDeskTest() {
    QDir().mkpath(host.programDir);
    installUntrappedReport(host);
    globals.gSession = NotesSession::ofClient(notes());
    notes().log.clear();
  }

  // --- databases ---
  std::shared_ptr<Database> makeDatabase(const QString& path, const QString& server = QString()) {
    return workspace->createDatabase(server, path, {});
  }
  static NoteId add(Database& database, const QString& subject) {
    Note note = document(u"Memo"_s);
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    database.notes().save(note);
    return note.header.id;
  }
  // All memos by subject; without a sorted column on demand.
  static NoteId addView(Database& database, const QString& name, bool sorted = true,
                        bool categories = false) {
    ViewColumn column;
    column.item = u"Subject"_s;
    column.sorted = sorted;
    column.categorized = categories;
    Note note;
    note.header.noteClass = noteclass::View;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(name));
    note.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(u"SELECT Form = \"Memo\""_s));
    note.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue({column}));
    note.add(u"$Collation"_s, itemflag::Summary, collationValue({column}));
    database.notes().save(note);
    return note.header.id;
  }
  void deleteFileOf(const QString& path) {
    ASSERT_TRUE(QFile::remove(workspace->database({}, path)->path()));
  }
  // The only box; its text is not compared whole where it holds a path.
  ShownBox onlyBox() {
    EXPECT_EQ(host.boxes.size(), 1);
    return host.boxes.isEmpty() ? ShownBox{} : host.boxes.first();
  }

  Globals globals;
  FrmReplic window;
  Routines routines{host, capi()};
  SessionRoutines sessions{globals, notes(), host};
  ServerLists servers{globals, host, capi(), routines};
  DatabaseLists databases{globals, host};
  ReplicDesk desk{window, globals, notes(), host, routines, sessions, servers, databases};
};

}  // namespace lens
