// A workspace of two servers through everything that the bulk tool does, each step followed by a comparison
// of all notes with what they must hold: nothing is lost and nothing changed but what was asked for.
// LENS_SOAK makes it 5000 documents; the exports of the folder that LENS_DXL_DIR names come in beside them.
#include <QElapsedTimer>
#include <cstdio>

#include "bulk/made_documents.h"
#include "bulk/shown_replic.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/search/full_text.h"
#include "embedded/support/view_fixture.h"
#include "embedded/views/folder_documents.h"

namespace lens {
namespace {

using testbed::Comparison;
using testbed::ModelNote;

const int kDocuments = qEnvironmentVariableIsSet("LENS_SOAK") ? 5000 : 80;
const QString kLetters = u"letters.nsf"_s, kArchive = u"archive.nsf"_s;
const QString kEvery = u"Every"_s, kMoving = u"Moving"_s, kDying = u"Dying"_s;

class TwoServers : public ShownReplic {
 public:
  using Model = QVector<ModelNote>;

  void SetUp() override {
    addServers();
    letters = make(kLetters, kHub);
    archive = make(kArchive, kMail);
    importExports();
    for (const auto& database : {letters, archive})
      for (const auto& [title, kind] :
           {std::pair(kEvery, QString()), std::pair(kMoving, u"move"_s), std::pair(kDying, u"die"_s)})
        addSortedView(*database, title, kind);
    Note folder = testbed::viewNote(
        u"Kept together"_s, {.columns = {testbed::sorted(u"Key"_s)}, .hierarchy = false, .flags = u"F"_s});
    letters->notes().save(folder);
    folderUnid = folder.header.unid;
    expected = testbed::modelOf(*letters);
    expectedArchive = testbed::modelOf(*archive);
    addDocuments();
    createFullTextIndex(*letters);
    openTool();
    expectNothingElseChanged();
  }

  // --- what there is ---
  void importExports() {
    const QString folder = qEnvironmentVariable("LENS_DXL_DIR");
    if (folder.isEmpty()) return;
    ImportReport report;
    DxlImporter importer(*letters);
    importer.applyDatabaseProperties(false);
    importer.importFiles({folder}, report);
    EXPECT_GT(report.notes, 0);
    std::printf("%d notes imported\n", report.notes);
  }
  static void addSortedView(Database& database, const QString& title, const QString& kind) {
    const QString formula =
        kind.isEmpty() ? u"SELECT Form = \"Memo\""_s : u"SELECT Kind = \"%1\""_s.arg(kind);
    Note view = testbed::viewNote(title, {.formula = formula, .columns = {testbed::sorted(u"Key"_s)}});
    database.notes().save(view);
  }
  // Every seventh one answers the one before, every eleventh is a conflict of it.
  void addDocuments() {
    Database::Transaction transaction(*letters);
    for (int i = 1; i <= kDocuments; ++i) {
      ModelNote note = testbed::madeDocument(i);
      const Unid before = expected.last().unid;
      if (i > 1 && (i % 7 == 0 || i % 11 == 0)) {
        note.parent = before;
        note.add(u"$REF"_s, noteRefsValue({before}));
      }
      if (i > 1 && i % 11 == 0) note.add(u"$Conflict"_s, textValue(QString()));
      testbed::store(*letters, note);
      expected.push_back(note);
      if (i % 3 == 0) inFolder.push_back(note.unid);
    }
    ModelNote profile;
    profile.add(u"$Name"_s, textValue(u"$profile_005setup"_s));
    profile.add(u"Form"_s, textValue(u"Memo"_s));
    testbed::store(*letters, profile);
    expected.push_back(profile);
    QVector<NoteId> documents;
    for (const Unid& unid : std::as_const(inFolder)) documents.push_back(idOf(*letters, unid));
    addToFolder(*letters, idOf(*letters, folderUnid), documents);
    transaction.commit();
  }
  static NoteId idOf(const Database& database, const Unid& unid) {
    Note note;
    EXPECT_TRUE(database.notes().read(unid, note)) << unid.text().toStdString();
    return note.header.id;
  }

  // --- what the user does ---
  void chooseSource(const QString& server, const QString& path, const QString& view) {
    window().txtTemplale->setText(QString());
    window().lstServer->setText(server);
    window().cmdExpand->raiseClick();
    choose(*window().lstDBNames, path);
    window().lstDBNames->raiseDblClick();
    window().cmdClearFldList->raiseClick();
    choose(*window().lstViewNames, view);
  }
  void chooseTarget(const QString& server, const QString& path) {
    window().lstDesignServer->setText(server);
    window().cmdExpand2->raiseClick();
    choose(*window().lstDBNamesDest, path);
  }
  // Ticks the rows of these items among those that the view's first documents have.
  void tick(const QStringList& names, const QString& find, const QString& replacement) {
    int ticked = 0;
    for (int row = 0; row < window().fldList->listCount(); ++row) {
      const QString text = window().fldList->list(row);
      if (!names.contains(text.left(text.indexOf(u':')))) continue;
      window().fldList->setSelected(row, true);
      ++ticked;
    }
    ASSERT_EQ(ticked, names.size()) << fields().join(u" | "_s).toStdString();
    window().txtFind->setText(find);
    window().txtReplace->setText(replacement);
  }
  void replicate() {
    window().lstServer->setText(kHub);
    window().cmdExpand->raiseClick();
    choose(*window().lstDBNames, kLetters);
    window().lstDesignServer->setText(kMail);
    app->bulk().replication.replicateDatabases();
    replica = workspace->database(kMail, kLetters);
  }
  static QString kindOf(ModelNote& note) {
    const testbed::ModelItem* const kind = note.find(u"Kind"_s);
    return kind ? firstText({kind->name, kind->flags, kind->value}) : QString();
  }
  static QString trace(const QString& server, const QString& path) {
    return server + u"!!" + path + u" at: 11.03.2024 14:05:09"_s;
  }
  // Whoever has the database open changes a document of it.
  static void change(Database& database, const Unid& unid, const QString& subject) {
    Note note;
    ASSERT_TRUE(database.notes().read(unid, note));
    note.find(u"Subject")->value = textValue(subject);
    database.notes().save(note);
  }
  ModelNote& modelled(const Unid& unid) {
    return *std::find_if(expected.begin(), expected.end(),
                         [&](const ModelNote& note) { return note.unid == unid; });
  }

  // --- what is seen ---
  void expectAsModelled(Model& model, const Database& database, const char* name) {
    const Comparison result = testbed::compareWith(model, database);
    EXPECT_EQ(result.differences.mid(0, 20), QStringList()) << name;
    constexpr quint16 kAllClasses = 0x7FFF;
    EXPECT_EQ(database.notes().noteCount(kAllClasses), model.size()) << name;
    compared.notes += result.notes;
    compared.items += result.items;
    compared.differences += result.differences;
  }
  void expectFolder(const Database& database) {
    QSet<QByteArray> found, wanted;
    for (const NoteId id : folderDocuments(database, folderUnid)) {
      Note note;
      ASSERT_TRUE(database.notes().read(id, note));
      found.insert(note.header.unid.bytes());
    }
    for (const Unid& unid : std::as_const(inFolder)) wanted.insert(unid.bytes());
    EXPECT_EQ(found, wanted);
  }
  void expectNothingElseChanged() {
    EXPECT_EQ(host.boxes, Boxes());
    host.boxes.clear();
    expectAsModelled(expected, *letters, "letters");
    expectAsModelled(expectedArchive, *archive, "archive");
    expectFolder(*letters);
    if (!replica) return;
    expectAsModelled(expected, *replica, "replica");
    expectFolder(*replica);
  }
  // Gone for replicas too.
  static void expectStub(const Database& database, const Unid& unid) {
    NoteVersion version;
    ASSERT_TRUE(database.versions().findVersion(unid, version));
    EXPECT_FALSE(version.live);
  }
  void expectCounts(int processed, int selected) {
    EXPECT_EQ(window().txtProc->text(), QString::number(processed));
    EXPECT_EQ(window().txtDocsSelected->text(), QString::number(selected));
  }
  void loseFromModel(const Unid& unid) {
    expected.removeIf([&](const ModelNote& note) { return note.unid == unid; });
    inFolder.removeAll(unid);
  }
  QVector<Unid> ofKind(const QString& kind) {
    QVector<Unid> unids;
    for (ModelNote& note : expected)
      if (kindOf(note) == kind) unids.push_back(note.unid);
    return unids;
  }

  void searchForWordsKeysAndViews();
  void copyAllWithReplacedText();
  void replaceInTheCopies();
  void checkAttachmentsOfTheCopies();
  void moveSome();
  void deleteSome();
  void replicateThere();
  void replicateChangesOfBothSides();

  std::shared_ptr<Database> letters, archive, replica;
  Model expected, expectedArchive;  // the replica holds what the letters hold
  QVector<Unid> inFolder;
  Unid folderUnid;
  Comparison compared;
};

const QStringList kReplacedItems = {u"Subject"_s, u"Tags"_s,    u"Größe"_s, u"a b"_s,    u"名前"_s,
                                    u"Amount"_s,  u"Numbers"_s, u"When"_s,  u"Writers"_s};

void TwoServers::searchForWordsKeysAndViews() {
  chooseSource(kHub, kLetters, kEvery);
  window().txtTemplale->setText(u"Pump"_s);
  window().cmdSearch->raiseClick();
  EXPECT_EQ(targets(), QStringList(kLetters));
  window().txtTemplale->setText(kEvery);
  window().cmdSearchInViews->raiseClick();
  EXPECT_EQ(targets(), QStringList(u"%1 %2"_s.arg(kLetters).arg(kDocuments)));
  chooseSource(kHub, kLetters, kEvery);
  window().txtTemplale->setText(u"000007"_s);
  window().cmdSearchAZ->raiseClick();
  EXPECT_TRUE(window().lstDBNames->selected(window().lstDBNames->find(kLetters)));
  window().txtTemplale->setText(u"00000"_s);
  window().cmdSearchAZ->raiseClick();
  EXPECT_FALSE(window().lstDBNames->selected(window().lstDBNames->find(kLetters)));
}

void TwoServers::copyAllWithReplacedText() {
  window().chkFields->setValue(1);
  chooseSource(kHub, kLetters, kEvery);
  chooseTarget(kMail, kArchive);
  tick(kReplacedItems + QStringList(u"Nothing"_s), u"2"_s, u"zwei"_s);
  window().cmdCopy->raiseClick();
  for (const ModelNote& note : std::as_const(expected)) {
    ModelNote copy = note;
    if (kindOf(copy).isEmpty()) continue;
    copy.unid = {};
    copy.sequence = 2;
    for (const QString& name : kReplacedItems) copy.replaceText(name, u"2"_s, u"zwei"_s);
    copy.add(u"qvCopiedFromAt"_s, textValue(trace(kHub, kLetters)));
    expectedArchive.push_back(copy);
  }
  expectCounts(kDocuments, kDocuments);
}

void TwoServers::replaceInTheCopies() {
  chooseSource(kMail, kArchive, kEvery);
  tick(kReplacedItems, u"zwei"_s, u"drei"_s);
  window().cmdReplace->raiseClick();
  for (ModelNote& note : expectedArchive) {
    if (kindOf(note).isEmpty()) continue;
    ++note.sequence;
    for (const QString& name : kReplacedItems) note.replaceText(name, u"zwei"_s, u"drei"_s);
  }
  expectCounts(kDocuments, kDocuments);
  window().chkFields->setValue(0);
}

void TwoServers::checkAttachmentsOfTheCopies() {
  const QDir out(directory.filePath(u"out"_s));
  out.mkpath(u"."_s);
  chooseSource(kMail, kArchive, kEvery);
  window().txtListToPrint->setText(out.path());
  window().cmdChkAttachments->raiseClick();
  qsizetype files = 0;
  for (const ModelNote& note : std::as_const(expectedArchive))
    for (const testbed::ModelItem& item : note.items) {
      FileObject file;
      if (!readFileValue(item.value, file)) continue;
      ++files;
      QFile extracted(out.filePath(file.name));
      ASSERT_TRUE(extracted.open(QIODevice::ReadOnly)) << file.name.toStdString();
      EXPECT_EQ(extracted.readAll(), item.file) << file.name.toStdString();
    }
  EXPECT_EQ(files, kDocuments / 5 * 2);
  EXPECT_EQ(out.entryList(QDir::Files | QDir::Hidden).size(), files);
  EXPECT_EQ(rowsOf(*window().lstAgentNames), QStringList()) << "none is damaged";
}

void TwoServers::moveSome() {
  chooseSource(kHub, kLetters, kMoving);
  chooseTarget(kMail, kArchive);
  window().cmdMoveDocs->raiseClick();
  const QVector<Unid> moved = ofKind(u"move"_s);
  ASSERT_EQ(moved.size(), (kDocuments + 4) / 5);
  for (const Unid& unid : moved) {
    ModelNote copy = modelled(unid);
    copy.unid = {};
    copy.sequence = 2;
    copy.add(u"zpMovedFromAt"_s, textValue(trace(kHub, kLetters)));
    expectedArchive.push_back(copy);
    loseFromModel(unid);
    expectStub(*letters, unid);
  }
  expectCounts(int(moved.size()), 0);
}

void TwoServers::deleteSome() {
  chooseSource(kHub, kLetters, kDying);
  host.answers.enqueue(answer::Ok);
  window().cmdDelDocs->raiseClick();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].text, u"Are you sure to delete the documents from: letters.nsf ?"_s);
  host.boxes.clear();
  for (const Unid& unid : ofKind(u"die"_s)) {
    loseFromModel(unid);
    expectStub(*letters, unid);
  }
  EXPECT_EQ(window().txtDocsSelected->text(), u"0"_s);
}

void TwoServers::replicateThere() {
  ASSERT_FALSE(workspace->databaseFiles(kMail).contains(kLetters));
  replicate();
  EXPECT_EQ(replica->info().replicaId, letters->info().replicaId);
}

// The side that has written a document more often wins; what the other one wrote stays beside as an answer.
void TwoServers::replicateChangesOfBothSides() {
  const QVector<Unid> staying = ofKind(u"stay"_s);
  const Unid here = staying[0], there = staying[1], goneThere = staying[2], gone = staying[3],
             both = staying[4];
  change(*letters, here, u"changed here"_s);
  change(*replica, there, u"changed there"_s);
  for (const auto& [unid, subject] :
       {std::pair(here, u"changed here"_s), std::pair(there, u"changed there"_s)}) {
    modelled(unid).find(u"Subject"_s)->value = textValue(subject);
    ++modelled(unid).sequence;
  }
  ASSERT_TRUE(replica->notes().remove(idOf(*replica, goneThere)));
  for (const auto& side : {letters, replica}) ASSERT_TRUE(side->notes().remove(idOf(*side, gone)));
  change(*letters, both, u"loses"_s);
  change(*replica, both, u"first"_s);
  change(*replica, both, u"wins"_s);
  ModelNote loser = modelled(both);
  loser.unid = {};
  loser.parent = both;
  loser.sequence += 1;
  loser.find(u"Subject"_s)->value = textValue(u"loses"_s);
  loser.add(u"$REF"_s, noteRefsValue({both}));
  loser.add(u"$Conflict"_s, textValue(QString()));
  modelled(both).sequence += 2;
  modelled(both).find(u"Subject"_s)->value = textValue(u"wins"_s);
  expected.push_back(loser);
  for (const Unid& unid : {goneThere, gone}) loseFromModel(unid);
  replicate();
  for (const auto& side : {letters, replica})
    for (const Unid& unid : {goneThere, gone}) expectStub(*side, unid);
}

TEST_F(TwoServers, LoseAndChangeNothingButWhatWasAskedFor) {
  QElapsedTimer clock;
  clock.start();
  const auto step = [&](const char* name, void (TwoServers::*operation)()) {
    SCOPED_TRACE(name);
    const qint64 begin = clock.elapsed();
    (this->*operation)();
    const qint64 end = clock.elapsed();
    expectNothingElseChanged();
    std::printf("%-28s %6lld ms\n", name, static_cast<long long>(end - begin));
  };
  step("search", &TwoServers::searchForWordsKeysAndViews);
  step("copy with replacement", &TwoServers::copyAllWithReplacedText);
  step("replace in source", &TwoServers::replaceInTheCopies);
  step("check attachments", &TwoServers::checkAttachmentsOfTheCopies);
  step("move", &TwoServers::moveSome);
  step("delete", &TwoServers::deleteSome);
  step("replicate", &TwoServers::replicateThere);
  step("replicate again", &TwoServers::replicateChangesOfBothSides);
  std::printf("%d documents, %lld notes and %lld items compared, %lld differences, %lld ms\n", kDocuments,
              static_cast<long long>(compared.notes), static_cast<long long>(compared.items),
              static_cast<long long>(compared.differences.size()), static_cast<long long>(clock.elapsed()));
}

}  // namespace
}  // namespace lens
