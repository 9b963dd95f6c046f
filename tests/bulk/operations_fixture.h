// The bulk tool's operations on a workspace with a local source and a target on a server: real controls, real
// databases, real views. The lists are filled by hand, as the user's choice.
//
//   TEST_F(Copying, CopiesEveryDocument) {
//     memo(u"one"_s);
//     chooseView();                             // source, view "All" and target are chosen
//     press(window.cmdCopy);
//     EXPECT_EQ(subjects(*target), QStringList(u"one"_s));
//   }
#pragma once

#include "bulk/bulk_deletion.h"
#include "bulk/bulk_fixture.h"
#include "bulk/copy_move.h"
#include "bulk/database_replication.h"
#include "bulk/replic_agents.h"
#include "bulk/source_replacement.h"
#include "embedded/support/view_fixture.h"

namespace lens {

inline const QString kHub = QStringLiteral("CN=Hub/O=Acme");

class OperationsTest : public ReplicDeskTest {
 protected:
  OperationsTest() {
    workspace->addServer(kHub);
    source = workspace->createDatabase({}, u"source.nsf"_s, infoOf(u"C125000000000001"_s));
    target = workspace->createDatabase(kHub, u"target.nsf"_s, infoOf(u"C125000000000002"_s));
    database = source;
    view(u"All"_s, {});
    databases.registerList(u"lstDBNames"_s, u"frmReplic"_s, *window.lstDBNames);
    globals.gSession.release();
    sessions.GetSessionProbe();
    notes().log.clear();
  }

  static DatabaseInfo infoOf(const QString& replicaId) {
    return {u"Letters"_s, replicaId, {}, {}, {}, false};
  }

  // --- data ---
  // Memos in the order of their subjects, unless the design says otherwise.
  void view(const QString& title, testbed::Design design) {
    if (design.formula == u"SELECT @All") design.formula = u"SELECT Form = \"Memo\""_s;
    if (design.columns.isEmpty()) design.columns = {testbed::sorted(u"Subject"_s)};
    Note note = testbed::viewNote(title, design);
    source->notes().save(note);
  }
  static Note memoNote(const QString& subject) {
    Note note = document(u"Memo"_s);
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    return note;
  }
  NoteId save(Note note) {
    source->notes().save(note);
    return note.header.id;
  }
  NoteId memo(const QString& subject) { return save(memoNote(subject)); }
  void memos(int count) {
    for (int i = 1; i <= count; ++i) memo(u"m%1"_s.arg(i));
  }
  QVector<Note> documents(const Database& from) {
    QVector<Note> found;
    from.notes().scan(noteclass::Document, [&](const Note& note) {
      found.push_back(note);
      return true;
    });
    return found;
  }
  QStringList subjects(const Database& from) {
    QStringList texts;
    for (const Note& note : documents(from)) texts += note.text(u"Subject");
    return texts;
  }
  // The values of an item; dates by the region.
  QStringList values(const Note& note, const QString& name) {
    const Item* item = note.find(name);
    if (!item) return {u"(missing)"_s};
    const Value all = itemValues(*item);
    if (!all.isArray()) return {u"(empty)"_s};
    QStringList texts;
    for (const Value& value : all.values()) texts += textOf(value, host.regional());
    return texts;
  }
  void damage(Database& in, NoteId id) {
    const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(id.value());
    ASSERT_EQ(sqlite3_exec(in.handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  }
  QString pathOf(const Database& of) const { return of.path(); }

  // --- what the user chooses ---
  void chooseSource(const QString& path = u"source.nsf"_s, const QString& server = u"Local"_s) {
    window.lstServer->setText(server);
    window.lstDBNames->clear();
    window.lstDBNames->addItem(path);
    window.lstDBNames->setSelected(0, true);
  }
  void chooseTarget(const QString& path = u"target.nsf"_s, const QString& server = kHub) {
    window.lstDesignServer->setText(server);
    window.lstDBNamesDest->clear();
    window.lstDBNamesDest->addItem(path);
    window.lstDBNamesDest->setSelected(0, true);
  }
  void chooseView(const QString& name = u"All"_s) {
    chooseSource();
    chooseTarget();
    window.lstViewNames->clear();
    window.lstViewNames->addItem(name);
    window.lstViewNames->setSelected(0, true);
  }
  // Marked rows of the field list, with the replacement turned on.
  void markFields(const QStringList& rows, const QString& find = {}, const QString& replace = {}) {
    window.chkFields->setValue(1);
    window.fldList->clear();
    for (const QString& row : rows) window.fldList->addItem(row);
    for (int row = 0; row < window.fldList->listCount(); ++row) window.fldList->setSelected(row, true);
    window.txtFind->setText(find);
    window.txtReplace->setText(replace);
  }
  void answerWith(const QVector<int>& answers) {
    for (const int reply : answers) host.answers.enqueue(reply);
  }
  // Presses "Stop" in the n-th yield.
  void stopInYield(int n) {
    host.yields = 0;
    host.whileYielding = [this, n] { globals.gStopFlag = globals.gStopFlag || host.yields == n; };
  }

  // --- what is seen ---
  QString processed() { return window.txtProc->text(); }
  QString selectedCount() { return window.txtDocsSelected->text(); }
  int callsOf(const QString& name) { return int(notes().log.count(name)); }
  static ShownBox refusal(const QString& text, const QString& title) {
    return {text, box::Information, title};
  }
  static ShownBox failure(const QString& title, int number) {
    return {standardErrorText(number) + u" in line: 0", box::Critical, title};
  }
  std::shared_ptr<Database> source, target;
  CopyMove copyMove{desk};
  SourceReplacement replacement{desk};
  BulkDeletion deletion{desk};
  DatabaseReplication replication{desk};
  ReplicAgents agents{desk};
};

}  // namespace lens
