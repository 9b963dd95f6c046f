// The help database as a reference: the one that the engine makes, and small ones with odd topics.
#include "app/sample_workspace.h"
#include "embedded/formula/function.h"
#include "embedded/help/help_database.h"
#include "embedded/help/topic.h"
#include "embedded/search/full_text.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

using ShownBoxes = QVector<ShownBox>;
constexpr const char* kButtons[] = {"cmdFuncList", "cmdLS", "cmdJava", "cmdHLP"};
const QString kPath = QStringLiteral("help/designer.nsf");

class HelpButtons : public LensFixture {
 protected:
  std::shared_ptr<Database> makeHelp(const QString& path, const QString& server = {}) {
    if (!server.isEmpty()) workspace->addServer(server);
    return workspace->createDatabase(server, path, {}, true);
  }
  static void addAbout(Database& help, const QString& subject,
                       const QString& chapter = u"LSAZ_CHAPTER_7_X"_s) {
    addTopic(help, {subject, chapter, subject, {u"A text."_s}});
  }
  // The program with a row of its own in the list.
  void startWithRow() {
    start();
    control<ListBox>("idList").clear();
    control<ListBox>("idList").addItem(u"old"_s);
    control<Label>("lblCounter").setText(u"17"_s);
    host.boxes.clear();
    host.pointers.clear();
    notes().log.clear();
  }
  void press(const char* button) { control<CommandButton>(button).click.fire(); }
  QStringList listedBy(const char* button) {
    press(button);
    return rows("idList");
  }
  QString pathOf(const Object& found) { return found.get(u"FILEPATH"_s).text(); }
  static ShownBox report(int number, const QString& description) {
    return {u"Run-time error '%1':\n\n"_s.arg(number) + description, box::Critical, {}};
  }
  static ShownBox report(int number) { return report(number, standardErrorText(number)); }
  void expectNothingChanged(const Object& database) {
    EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
    EXPECT_EQ(text("lblCounter"), u"17"_s);
    EXPECT_EQ(state().gDb, database);
    EXPECT_EQ(host.pointers, QVector<int>());
  }
};

class HelpLookupTest : public HelpButtons {
 protected:
  HelpLookupTest() { openDatabase(u"mail.nsf"_s); }
};

// --- the help of the engine ---

class RealHelp : public HelpLookupTest {
 protected:
  RealHelp() {
    const auto help = makeHelp(kPath);
    fillHelpDatabase(*help);
    createFullTextIndex(*help);
    startWithRow();
  }
  // Subjects of the rows; all rows have the mark in the same column and an ID of eight digits behind it.
  QStringList subjects(const QStringList& listed) {
    QStringList found;
    for (const QString& row : listed) {
      const qsizetype mark = row.size() - 8 - 3;
      EXPECT_EQ(row.mid(mark, 3), u" # "_s) << row.toStdString();
      EXPECT_EQ(row.size(), listed.first().size()) << row.toStdString();
      found += row.left(mark).trimmed();
    }
    return found;
  }
};

TEST_F(RealHelp, ListsTheFunctions) {
  const QStringList found = subjects(listedBy("cmdFuncList"));
  EXPECT_EQ(found.size(), formula::allFunctions().size());
  for (const QString& name : {u"@Abstract"_s, u"@Left"_s, u"@Year"_s})
    EXPECT_TRUE(found.contains(name)) << name.toStdString();
  EXPECT_FALSE(found.contains(u"@Functions in a window"_s)) << "a text for the help key is no topic";
  EXPECT_EQ(text("lblCounter"), QString::number(found.size()));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RealHelp, ListsScriptAndJava) {
  const QStringList script = subjects(listedBy("cmdLS"));
  EXPECT_TRUE(script.contains(u"NotesDocument class"_s));
  EXPECT_EQ(text("lblCounter"), QString::number(script.size()));
  const QStringList java = subjects(listedBy("cmdJava"));
  EXPECT_TRUE(java.contains(u"recycle method"_s));
  EXPECT_FALSE(java.contains(u"NotesDocument class"_s));
  EXPECT_EQ(text("lblCounter"), QString::number(java.size()));
}

TEST_F(RealHelp, SearchesWhatIsTypedBesideTheContents) {
  setText("txtSearch", u"recycle"_s);
  const QStringList found = subjects(listedBy("cmdHLP"));
  EXPECT_TRUE(found.contains(u"recycle method"_s));
  EXPECT_LT(found.size(), 50);
  setText("txtSearch", u"FIELD Subject CONTAINS Left"_s);
  EXPECT_TRUE(subjects(listedBy("cmdHLP")).contains(u"@Left"_s));
}

TEST_F(RealHelp, TheOrderOfASearchIsThatOfTheEngine) {
  setText("txtSearch", u"date"_s);
  const QVector<NoteId> order = fullTextSearch(*workspace->database(QString(), kPath), u"date"_s, 0);
  ASSERT_GT(order.size(), 3);
  const QStringList listed = listedBy("cmdHLP");
  ASSERT_EQ(listed.size(), order.size());
  for (qsizetype i = 0; i < order.size(); ++i)
    EXPECT_EQ(NoteId(listed[i].right(8).toUInt(nullptr, 16)), order[i]);
}

TEST_F(RealHelp, AnEmptySearchKeepsTheOldRowsAndCountsThem) {
  setText("txtSearch", QString());
  press("cmdHLP");
  EXPECT_TRUE(notes().log.contains(u"FTSEARCH"_s)) << "it goes to the engine as it is";
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"1"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RealHelp, AMistakeInTheQueryEndsInTheReport) {
  setText("txtSearch", u"pump AND ("_s);
  press("cmdHLP");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '4106':\n\n"_s))
      << host.boxes[0].text.toStdString();
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
}

TEST_F(RealHelp, TheHelpBecomesTheCurrentDatabaseAndNothingElseChanges) {
  const QString title = caption();
  const Object document = state().gDoc, collection = state().gNoteColl;
  state().gDocKind = u"DESIGN"_s;
  press("cmdFuncList");
  EXPECT_EQ(pathOf(state().gDb), QDir::toNativeSeparators(kPath));
  EXPECT_EQ(state().gDoc, document);
  EXPECT_EQ(state().gNoteColl, collection);
  EXPECT_EQ(state().gDocKind, u"DESIGN"_s);
  EXPECT_EQ(caption(), title);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  EXPECT_EQ(host.yields, 0);
}

TEST_F(RealHelp, ATopicIsOpenedWithTheViewer) {
  press("cmdFuncList");
  selectRow("idList", u"@Left "_s);
  click("cmdidList");
  EXPECT_EQ(boxes(), QStringList());
  selectRow("fldList", u"Subject:"_s);
  EXPECT_EQ(text("txtFieldContent"), u"@Left"_s);
  selectRow("fldList", u"Body:"_s);
  EXPECT_TRUE(text("txtFieldContent").contains(u"@Left("_s)) << text("txtFieldContent").toStdString();
}

// What the window calls, in its order: two passes over the topics, and each is asked anew.
TEST_F(RealHelp, TheWidthIsFoundInAPassOfItsOwn) {
  setText("txtSearch", u"recycle"_s);
  const qsizetype topics = listedBy("cmdHLP").size();
  const QStringList log = notes().log;
  EXPECT_EQ(log.count(u"GETFIRSTDOCUMENT"_s), 2);
  EXPECT_EQ(log.count(u"GETNEXTDOCUMENT"_s), 2 * topics);
  EXPECT_LT(log.lastIndexOf(u"GETFIRSTDOCUMENT"_s), log.indexOf(u"NoteID"_s));
}

// --- the samples of a first start ---

TEST_F(HelpButtons, WorkOnTheSamplesOfAFirstStart) {
  fillFirstTime(*workspace);
  const auto mail = openSampleMail(*workspace);
  startWithRow();
  setText("txtSearch", u"date"_s);
  for (const char* button : kButtons) {
    EXPECT_GT(listedBy(button).size(), 1) << button;
    EXPECT_EQ(pathOf(state().gDb), QDir::toNativeSeparators(kPath)) << button;
  }
  EXPECT_EQ(boxes(), QStringList());
}

// --- which file ---

TEST_F(HelpLookupTest, WithoutASessionNothingHappens) {
  makeHelp(kPath);
  startWithRow();
  const Object database = state().gDb;
  state().gSession.release();
  for (const char* button : kButtons) press(button);
  expectNothingChanged(database);
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(HelpLookupTest, WithoutAHelpNothingChanges) {
  makeHelp(u"design.nsf"_s);
  startWithRow();
  const Object database = state().gDb;
  for (const char* button : kButtons) press(button);
  expectNothingChanged(database);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(HelpLookupTest, TheFirstPathThatHoldsTheNameWins) {
  addAbout(*makeHelp(u"help/designer.nsf"_s), u"the help"_s);
  addAbout(*makeHelp(u"aaa/My_DESIGNER.NSF"_s), u"another"_s);
  startWithRow();
  ASSERT_EQ(listedBy("cmdLS").size(), 1);
  EXPECT_TRUE(rows("idList")[0].startsWith(u"another # "_s));
  EXPECT_EQ(pathOf(state().gDb), QDir::toNativeSeparators(u"aaa/My_DESIGNER.NSF"_s));
}

TEST_F(HelpLookupTest, TheHelpIsOpenedLocallyEvenWhereAServerTellsOfIt) {
  const QString server = u"CN=Hub/O=Acme"_s;
  addAbout(*makeHelp(kPath), u"local"_s);
  addAbout(*makeHelp(kPath, server), u"far"_s);
  startWithRow();
  state().gServer = server;
  ASSERT_EQ(listedBy("cmdLS").size(), 1);
  EXPECT_TRUE(rows("idList")[0].startsWith(u"local # "_s));
  EXPECT_EQ(state().gDb.get(u"SERVER"_s).text(), QString());
}

TEST_F(HelpLookupTest, AHelpThatIsOnTheServerOnlyCannotBeOpened) {
  const QString server = u"CN=Hub/O=Acme"_s;
  addAbout(*makeHelp(kPath, server), u"far"_s);
  startWithRow();
  const Object database = state().gDb;
  state().gServer = server;
  press("cmdLS");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"_s));
  expectNothingChanged(database);
}

// --- topics ---

TEST_F(HelpLookupTest, TheFormulasSelectByTypeChapterAndSubject) {
  const auto help = makeHelp(kPath);
  addAbout(*help, u"@One"_s, u"H_FORMULA"_s);
  addAbout(*help, u"two"_s, u"LSAZ_CHAPTER_7"_s);
  addAbout(*help, u"three"_s, u"LSAZ_CHAPTER_8"_s);
  addAbout(*help, u"four"_s, u"H_10_NOTES_CLASSES"_s);
  for (const QString& type : {u"F1only"_s, u"How to"_s}) {
    addTopic(*help, {u"@Five"_s, u"H_10_NOTES"_s, {}, {}, type});
    addTopic(*help, {u"six"_s, u"LSAZ_CHAPTER_7"_s, {}, {}, type});
  }
  startWithRow();
  const auto subjectOf = [&](const char* button) {
    const QStringList listed = listedBy(button);
    return listed.size() == 1 ? listed[0].section(u' ', 0, 0) : listed.join(u'|');
  };
  EXPECT_EQ(subjectOf("cmdFuncList"), u"@One"_s);
  EXPECT_EQ(subjectOf("cmdLS"), u"two"_s);
  EXPECT_EQ(subjectOf("cmdJava"), u"four"_s);
}

TEST_F(HelpLookupTest, SubjectsFillTheColumnOfTheLongest) {
  const auto help = makeHelp(kPath);
  for (const QString& subject : {u"ab"_s, QString(), u"abcde"_s}) addAbout(*help, subject);
  startWithRow();
  QStringList lines;
  for (const QString& row : listedBy("cmdLS")) lines += row.left(row.size() - 8);
  EXPECT_EQ(lines, QStringList({u"ab    # "_s, u"      # "_s, u"abcde # "_s}));
}

TEST_F(HelpLookupTest, WithoutAnySubjectRowsBeginWithTheMark) {
  const auto help = makeHelp(kPath);
  addAbout(*help, QString());
  addAbout(*help, QString());
  startWithRow();
  for (const QString& row : listedBy("cmdLS")) {
    EXPECT_TRUE(row.startsWith(u" # "_s)) << row.toStdString();
    EXPECT_EQ(row.size(), 3 + 8);
  }
}

TEST_F(HelpLookupTest, OnlyTheFirstSubjectCounts) {
  const auto help = makeHelp(kPath);
  Note topic = document(u"Topic"_s);
  topic.add(u"TopicType"_s, itemflag::Summary, textValue(u"About"));
  topic.add(u"_Parent"_s, itemflag::Summary, textValue(u"LSAZ_CHAPTER_7"));
  topic.add(u"Subject"_s, itemflag::Summary, textListValue({u"one"_s, u"a longer one"_s}));
  help->notes().save(topic);
  startWithRow();
  ASSERT_EQ(listedBy("cmdLS").size(), 1);
  EXPECT_TRUE(rows("idList")[0].startsWith(u"one # "_s));
}

TEST_F(HelpLookupTest, ATopicWithoutASubjectEndsInTheReportAndTheHourglassStays) {
  const auto help = makeHelp(kPath);
  addAbout(*help, u"ab"_s);
  Note topic = document(u"Topic"_s);
  topic.add(u"TopicType"_s, itemflag::Summary, textValue(u"About"));
  topic.add(u"_Parent"_s, itemflag::Summary, textValue(u"LSAZ_CHAPTER_7"));
  help->notes().save(topic);
  startWithRow();
  press("cmdLS");
  EXPECT_EQ(host.boxes, ShownBoxes({report(err::TypeMismatch)}));
  EXPECT_EQ(rows("idList"), QStringList());
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  EXPECT_EQ(pathOf(state().gDb), QDir::toNativeSeparators(kPath));
}

TEST_F(HelpLookupTest, AClickOnAFieldResetsAnHourglassThatStayed) {
  openDocument([this] {
    Note memo = document(u"Memo"_s);
    return save(memo);
  }());
  const auto help = makeHelp(kPath);
  addAbout(*help, u"ab"_s);
  startWithRow();
  notes().failing.insert(u"GETITEMVALUE"_s, RuntimeError(70));
  press("cmdLS");
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  notes().failing.clear();
  select("fldList", 0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(HelpLookupTest, WithoutAHitTheOldRowsStayAndAreCounted) {
  addAbout(*makeHelp(kPath), u"only script"_s);
  startWithRow();
  EXPECT_EQ(listedBy("cmdJava"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"1"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(HelpLookupTest, ASelectionThatIsNothingResetsThePointerOnly) {
  addAbout(*makeHelp(kPath), u"script"_s);
  startWithRow();
  notes().replies.insert(u"SEARCH"_s, Object());
  EXPECT_EQ(listedBy("cmdLS"), QStringList(u"old"_s));
  EXPECT_EQ(text("lblCounter"), u"17"_s);
  EXPECT_EQ(host.pointers, QVector<int>({pointer::Default}));
}

TEST_F(HelpLookupTest, WithoutAnIndexTheSearchEndsInTheReport) {
  addAbout(*makeHelp(kPath), u"script"_s);
  startWithRow();
  setText("txtSearch", u"text"_s);
  press("cmdHLP");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '4107':\n\n"_s))
      << host.boxes[0].text.toStdString();
  EXPECT_EQ(rows("idList"), QStringList(u"old"_s));
  EXPECT_EQ(pathOf(state().gDb), QDir::toNativeSeparators(kPath)) << "it was found before";
}

TEST_F(HelpLookupTest, MoreRowsThanTheCounterHoldsEndInTheReport) {
  addAbout(*makeHelp(kPath), u"script"_s);
  startWithRow();
  for (const int others : {32'766, 32'767}) {
    host.boxes.clear();
    bool added = false;
    notes().onCall = [&](const QString& name) {
      if (name != u"NoteID" || std::exchange(added, true)) return;
      for (int i = 0; i < others; ++i) control<ListBox>("idList").addItem(QString());
    };
    press("cmdLS");
    EXPECT_EQ(control<ListBox>("idList").listCount(), others + 1);
    if (others == 32'766) {
      EXPECT_EQ(host.boxes, ShownBoxes());
      EXPECT_EQ(text("lblCounter"), u"32767"_s);
      EXPECT_EQ(host.pointerCode, pointer::Default);
    } else {
      EXPECT_EQ(host.boxes, ShownBoxes({report(err::Overflow)}));
      EXPECT_EQ(text("lblCounter"), u"32767"_s);
      EXPECT_EQ(host.pointerCode, pointer::Hourglass);
    }
  }
}

// --- a failure in every place ---

TEST_F(HelpLookupTest, AnyFailureEndsInTheReport) {
  const auto help = makeHelp(kPath);
  addAbout(*help, u"@one"_s, u"H_10_NOTES"_s);
  addAbout(*help, u"script"_s);
  createFullTextIndex(*help);
  startWithRow();
  for (const char* button : kButtons) {
    int failed = 0;
    for (int n = 1; n < 200; ++n) {
      state().gDb.release();
      setText("txtSearch", u"text"_s);
      host.boxes.clear();
      host.pointers.clear();
      notes().log.clear();
      notes().failAt = n;
      press(button);
      notes().failAt = 0;
      if (notes().log.size() < n) break;
      ++failed;
      EXPECT_EQ(host.boxes, ShownBoxes({report(70)})) << button << ", failure in call " << n;
      const bool found = notes().log.contains(u"GETFIRSTDOCUMENT"_s);
      EXPECT_EQ(host.pointers.size(), found ? 1 : 0) << n;
      EXPECT_EQ(host.pointers.count(pointer::Hourglass), found ? 1 : 0) << n;
      const bool opened = notes().log.indexOf(u"GETDATABASE"_s) >= 0 && notes().log[n - 1] != u"GETDATABASE";
      EXPECT_EQ(state().gDb.isNothing(), !opened) << button << ", failure in call " << n;
    }
    EXPECT_GE(failed, 12) << button;
  }
}

// --- the window ---

TEST_F(HelpLookupTest, TheButtonsTellWhatTheyDo) {
  startWithRow();
  const QStringList tips = {u"Colllection of @ functions"_s, u"Colllection of Lotus-Script functions"_s,
                            u"Colllection of Java functions"_s, u"Fulltext Search of search input"_s};
  for (int i = 0; i < 4; ++i) {
    const Button& button = control<Button>(kButtons[i]);
    EXPECT_EQ(button.toolTip(), tips[i]);
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.y(), control<Button>("cmdFuncList").y());
  }
}

}  // namespace
}  // namespace lens
