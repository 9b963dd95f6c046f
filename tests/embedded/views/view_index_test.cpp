// Which documents a view shows, and in which order.
#include <sqlite3.h>

#include <QFile>
#include <atomic>
#include <thread>

#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/search/selection.h"
#include "embedded/support/view_fixture.h"
#include "embedded/views/view_documents.h"

namespace lens::testbed {
namespace {

using ViewOrder = ViewTest;

TEST_F(ViewOrder, IsThatOfTheNoteIdWithoutASortedColumn) {
  const NoteId view = addView({.columns = {column(u"Subject"_s)}});
  add(u"b"_s);
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"b a"_s);
}

TEST_F(ViewOrder, SortsTextsWithoutCaseAndAccentsBehindTheirLetter) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  for (const QString& text : {u"Zebra"_s, u"äpfel"_s, u"apfel"_s, u"Birne"_s, u"APFELMUS"_s, u"-dash"_s,
                              u"'quote"_s, u"9"_s, u"apfel"_s})
    add(text);
  EXPECT_EQ(lines(view), u"'quote -dash 9 apfel apfel APFELMUS äpfel Birne Zebra"_s);
}

TEST_F(ViewOrder, NumbersGoBeforeTimesAndTimesBeforeTextsAndAMissingValueIsTheFirstText) {
  const NoteId up = addView({.columns = {sorted(u"Value"_s)}});
  const NoteId down = addView({.columns = {descending(u"Value"_s)}});
  add(u"text"_s, {{u"Value"_s, textValue(u"a")}});
  add(u"missing"_s);
  add(u"late"_s, {{u"Value"_s, timeValue(timeDateOfDate({2024, 2, 1}))}});
  add(u"early"_s, {{u"Value"_s, timeValue(timeDateOfDate({1931, 2, 1}))}});
  add(u"ten"_s, {{u"Value"_s, numberValue(10)}});
  add(u"minus"_s, {{u"Value"_s, numberValue(-2.5)}});
  add(u"nine"_s, {{u"Value"_s, numberValue(9)}});
  add(u"rich"_s, {{u"Value"_s, rawValue(itemtype::RichText, QByteArray(4, 'x'))}});
  EXPECT_EQ(lines(up), u"minus nine ten early late missing rich text"_s);
  EXPECT_EQ(lines(down), u"text missing rich late early ten nine minus"_s);
}

TEST_F(ViewOrder, TheSecondColumnDecidesWhereTheFirstIsEqual) {
  const NoteId view = addView({.columns = {sorted(u"Name"_s), descending(u"Age"_s)}});
  const auto person = [&](const QString& subject, const QString& name, double age) {
    add(subject, {{u"Name"_s, textValue(name)}, {u"Age"_s, numberValue(age)}});
  };
  person(u"1"_s, u"Bo"_s, 5);
  person(u"2"_s, u"Al"_s, 5);
  person(u"3"_s, u"AL"_s, 50);
  person(u"4"_s, u"Bob"_s, 70);
  EXPECT_EQ(lines(view), u"3 2 1 4"_s);
}

TEST_F(ViewOrder, ColumnsAreComputedByTheirFormula) {
  const NoteId view = addView({.columns = {computed(sorted(u"$1"_s), u"@Length(Subject)"_s)}});
  add(u"three"_s);
  add(u"a"_s);
  add(u"bb"_s);
  EXPECT_EQ(lines(view), u"a bb three"_s);
}

TEST_F(ViewOrder, AColumnInCompiledFormOnlyCountsByTheItemOfItsName) {
  ViewColumn compiled = sorted(u"Subject"_s);
  compiled.formula = QByteArray("\x12\x00\x01\x02", 4);
  const NoteId view = addView({.columns = {compiled}});
  add(u"b"_s);
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"a b"_s);
  EXPECT_TRUE(readViewDesign(read(view)).columns[0].compiledOnly);
}

// As real databases and raw exports have them.
TEST_F(ViewOrder, CompiledFormulasSelectAndSortAsTheirSourceDoes) {
  const formula::MachineEnvironment environment;
  const QString selection = u"kind := \"Memo\"; Form = kind & Amount > 1"_s;
  const QString key = u"sign := \"-\"; @Right(Subject; sign) + @Text(Amount)"_s;
  for (int i = 0; i < 12; ++i)
    add(u"%1-%2"_s.arg(i).arg(11 - i),
        {{u"Form"_s, textValue(i % 3 ? u"Memo" : u"Task")}, {u"Amount"_s, numberValue(i % 4)}});
  ViewColumn compiled = sorted(u"$1"_s);
  compiled.formula = formula::writeCompiledColumn(key, u"$1", environment).bytes;
  ASSERT_FALSE(compiled.formula.isEmpty());
  const NoteId source = addView({.formula = selection, .columns = {computed(sorted(u"$1"_s), key)}});
  const NoteId view = addView({.columns = {compiled}}, u"Compiled"_s);
  const QByteArray bytes =
      formula::writeCompiledSelection(selection, {{u"$1"_s, compiled.formula}}, environment).bytes;
  ASSERT_FALSE(bytes.isEmpty());
  change(view, u"$Formula"_s, rawValue(itemtype::Formula, bytes));
  EXPECT_FALSE(lines(source).isEmpty());
  EXPECT_EQ(lines(view), lines(source));
  EXPECT_EQ(columnOf(view, 0), columnOf(source, 0));
  const ViewDesign design = readViewDesign(read(view));
  EXPECT_FALSE(design.columns[0].compiledOnly);
  EXPECT_EQ(design.columns[0].formula, key);
  EXPECT_EQ(design.selection, u"kind := \"Memo\";SELECT  Form = kind & Amount > 1");
}

// Which documents these would hold nobody can tell, and the reason names what stands in the way.
TEST_F(ViewOrder, ASelectionThatCannotBeReadShowsNoView) {
  const std::pair<const char*, QStringView> cases[] = {
      {"0a0000000800c1000300", u"codes without a known name: function C1"},
      {"120000001000020071170000000000000300", u"codes without a known name: keyword 6001"},
      {"160009000c005a5a5a5a5a5a5a5a0400040004000400", u"Formula is hidden"},
      {"12000102", u"its size is wrong"},
  };
  for (const auto& [hex, reason] : cases) {
    const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
    change(view, u"$Formula"_s, rawValue(itemtype::Formula, QByteArray::fromHex(hex)));
    try {
      lines(view);
      ADD_FAILURE() << "The view was shown: " << hex;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), kNoFormulaSource);
      EXPECT_TRUE(error.description().contains(reason)) << error.description().toStdString();
    }
  }
}

TEST_F(ViewOrder, ItemsThatAreNoSummaryAreNotSeen) {
  const NoteId view = addView({.columns = {sorted(u"Hidden"_s)}});
  for (const QString& subject : {u"b"_s, u"a"_s}) {
    const NoteId id = add(subject);
    Note note = read(id);
    note.add(u"Hidden"_s, 0, textValue(subject));
    database->notes().save(note);
  }
  EXPECT_EQ(lines(view), u"b a"_s);
}

TEST_F(ViewOrder, LongTextsThatDifferFarBehindStayByTheirId) {
  const NoteId view = addView({.columns = {sorted(u"Long"_s)}});
  const QString common(2000, u'x');
  add(u"first"_s, {{u"Long"_s, textValue(QString(common + u'b'))}});
  add(u"second"_s, {{u"Long"_s, textValue(QString(common + u'a'))}});
  add(u"short"_s, {{u"Long"_s, textValue(u"xx")}});
  EXPECT_EQ(lines(view), u"short first second"_s);
}

// --- Categories ----------------------------------------------------------------------------------------

TEST_F(ViewOrder, CategoriesStandAboveTheirDocumentsAndBackslashesMakeLevels) {
  const NoteId view = addView({.columns = {category(u"Kind"_s), sorted(u"Subject"_s)}});
  const auto put = [&](const QString& subject, const QString& kind) {
    return add(subject, {{u"Kind"_s, textValue(kind)}});
  };
  put(u"2"_s, u"Fruit\\Apple"_s);
  put(u"1"_s, u"Fruit\\Apple"_s);
  put(u"3"_s, u"fruit"_s);
  put(u"4"_s, u"Bread"_s);
  put(u"5"_s, u"Fruit\\Pear\\Ripe"_s);
  add(u"6"_s);
  EXPECT_EQ(lines(view), u"[] >6 [Bread] >4 [fruit] >3 >[Apple] >>1 >>2 >[Pear] >>[Ripe] >>>5"_s);
}

TEST_F(ViewOrder, EachValueOfACategoryIsARowOfItsOwn) {
  const NoteId view = addView({.columns = {category(u"Kind"_s)}});
  add(u"two"_s, {{u"Kind"_s, textListValue({u"B"_s, u"A"_s, u"a"_s})}});
  add(u"one"_s, {{u"Kind"_s, textValue(u"A")}});
  EXPECT_EQ(lines(view), u"[A] >two >one [B] >two"_s);
  EXPECT_EQ(viewDocuments(*database, read(view)).size(), 2) << "each document once";
}

TEST_F(ViewOrder, CategoriesMayBeNumbersAndNested) {
  ViewColumn year = category(u"Year"_s);
  year.descending = true;
  const NoteId view = addView({.columns = {year, category(u"Kind"_s)}});
  const auto put = [&](const QString& subject, double number, const QString& kind) {
    add(subject, {{u"Year"_s, numberValue(number)}, {u"Kind"_s, textValue(kind)}});
  };
  put(u"1"_s, 1999, u"A"_s);
  put(u"2"_s, 2024, u"B"_s);
  put(u"3"_s, 2024, u"A"_s);
  EXPECT_EQ(lines(view), u"[2024] >[A] >>3 >[B] >>2 [1999] >[A] >>1"_s);
}

TEST_F(ViewOrder, SeparateValuesMakeRowsWithoutCategories) {
  ViewColumn names = separate(u"Names"_s);
  const NoteId apart = addView({.columns = {names}});
  const NoteId together = addView({.columns = {sorted(u"Names"_s)}});
  add(u"x"_s, {{u"Names"_s, textListValue({u"c"_s, u"a"_s})}});
  add(u"y"_s, {{u"Names"_s, textValue(u"b")}});
  EXPECT_EQ(lines(apart), u"x y x"_s);
  EXPECT_EQ(lines(together), u"y x"_s);
}

// --- Responses -----------------------------------------------------------------------------------------

TEST_F(ViewOrder, ResponsesStandBelowWhatTheyAnswerAndOrphansAreNotShown) {
  const Design design{.columns = {sorted(u"Subject"_s)}, .hierarchy = true};
  const NoteId view = addView(design);
  Design flat = design;
  flat.hierarchy = false;
  const NoteId flatView = addView(flat);
  const NoteId b = add(u"b"_s), a = add(u"a"_s);
  const NoteId answer = add(u"z"_s, {}, unidOf(b));
  add(u"y"_s, {}, unidOf(b));
  add(u"x"_s, {}, unidOf(answer));
  add(u"orphan"_s, {}, Unid::create());
  EXPECT_EQ(lines(view), u"a b >z >>x >y"_s);
  EXPECT_EQ(lines(flatView), u"a b orphan x y z"_s);
  // The parent moves, goes, and comes back: its responses follow.
  change(b, u"Subject"_s, textValue(u"0"));
  EXPECT_EQ(lines(view), u"0 >z >>x >y a"_s);
  Note kept = read(b);
  database->notes().remove(b);
  EXPECT_EQ(lines(view), u"a"_s);
  database->notes().saveAsGiven(kept);
  EXPECT_EQ(lines(view), u"0 >z >>x >y a"_s);
  database->notes().remove(answer, false);
  EXPECT_EQ(lines(view), u"0 >y a"_s);
  database->notes().remove(a);
}

TEST_F(ViewOrder, AReferenceItemMakesAResponseToo) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}, .hierarchy = true});
  const NoteId main = add(u"b"_s);
  add(u"a"_s, {{u"$REF"_s, noteRefsValue({unidOf(main)})}});
  EXPECT_EQ(lines(view), u"b >a"_s);
}

TEST_F(ViewOrder, ResponsesFollowTheirParentIntoEachOfItsCategories) {
  const NoteId view = addView({.columns = {category(u"Kind"_s)}, .hierarchy = true});
  const NoteId main = add(u"m"_s, {{u"Kind"_s, textListValue({u"A"_s, u"B"_s})}});
  add(u"r"_s, {{u"Kind"_s, textValue(u"C")}}, unidOf(main));
  EXPECT_EQ(lines(view), u"[A] >m >>r [B] >m >>r"_s);
}

TEST_F(ViewOrder, CirclesOfResponsesAreNotShownAndEndNothing) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}, .hierarchy = true});
  const NoteId a = add(u"a"_s, {}, Unid::create());
  const NoteId b = add(u"b"_s, {}, unidOf(a));
  Note note = read(a);
  note.header.parent = unidOf(b);
  database->notes().save(note);
  add(u"c"_s);
  EXPECT_EQ(lines(view), u"c"_s);
}

TEST_F(ViewOrder, AnswersOfAnswersEndAtThirtyTwo) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}, .hierarchy = true});
  NoteId last = add(u"main"_s);
  ViewIndex index(*database, view);
  index.refresh();
  for (int i = 0; i < 40; ++i) last = add(u"r"_s, {}, unidOf(last));
  index.refresh();
  EXPECT_EQ(index.count(), 33);
}

TEST_F(ViewOrder, DescendantsAreSelectedWithTheirParentAndLeaveWithIt) {
  const NoteId all =
      addView({.formula = u"SELECT Kind = \"in\" | @AllDescendants"_s, .columns = {column(u"Subject"_s)}});
  const NoteId near =
      addView({.formula = u"SELECT Kind = \"in\" | @AllChildren"_s, .columns = {column(u"Subject"_s)}});
  const NoteId main = add(u"m"_s, {{u"Kind"_s, textValue(u"out")}});
  const NoteId first = add(u"r"_s, {}, unidOf(main));
  add(u"rr"_s, {}, unidOf(first));
  EXPECT_EQ(lines(all), QString());
  change(main, u"Kind"_s, textValue(u"in"));
  EXPECT_EQ(lines(all), u"m r rr"_s);
  EXPECT_EQ(lines(near), u"m r"_s);
  change(main, u"Kind"_s, textValue(u"out"));
  EXPECT_EQ(lines(all), QString());
  EXPECT_EQ(lines(near), QString());
}

// --- What is in a view ---------------------------------------------------------------------------------

using ViewContent = ViewTest;

TEST_F(ViewContent, FollowsEveryChange) {
  const NoteId view = addView({.formula = u"SELECT Kind = \"x\""_s, .columns = {sorted(u"Subject"_s)}});
  const NoteId b = add(u"b"_s, {{u"Kind"_s, textValue(u"x")}});
  EXPECT_EQ(lines(view), u"b"_s);
  const NoteId a = add(u"a"_s, {{u"Kind"_s, textValue(u"x")}});
  add(u"c"_s, {{u"Kind"_s, textValue(u"y")}});
  EXPECT_EQ(lines(view), u"a b"_s);
  change(b, u"Kind"_s, textValue(u"y"));
  EXPECT_EQ(lines(view), u"a"_s);
  change(b, u"Kind"_s, textValue(u"x"));
  change(b, u"Subject"_s, textValue(u"0"));
  EXPECT_EQ(lines(view), u"0 a"_s);
  database->notes().remove(a);
  EXPECT_EQ(lines(view), u"0"_s);
  database->notes().remove(b, false);
  EXPECT_EQ(lines(view), QString());
}

TEST_F(ViewContent, HasNoProfilesAndNoDesign) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  const NoteId id = add(u"a"_s);
  add(u"profile"_s, {{u"$Name"_s, textValue(u"$profile_003abc_")}});
  EXPECT_EQ(lines(view), u"a"_s);
  change(id, u"$Name"_s, textValue(u"$profile_003abd_"));
  EXPECT_EQ(lines(view), QString());
}

TEST_F(ViewContent, ADamagedDocumentDropsOut) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  const NoteId id = add(u"a"_s);
  add(u"b"_s);
  EXPECT_EQ(lines(view), u"a b"_s);
  sqlite3_exec(database->handle(),
               qPrintable(u"UPDATE note SET items = x'0102', change = 900 WHERE id = %1"_s.arg(id.value())),
               nullptr, nullptr, nullptr);
  EXPECT_EQ(lines(view), u"b"_s);
  dropViewIndexes(*database);
  EXPECT_EQ(lines(view), u"b"_s);
}

TEST_F(ViewContent, ANewDesignMakesTheIndexAnew) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"a"_s);
  add(u"b"_s);
  ViewIndex index(*database, view);
  index.refresh();
  Note changed =
      viewNote(u"View"_s, {.formula = u"SELECT Subject != \"c\""_s, .columns = {descending(u"Subject"_s)}});
  changed.header = read(view).header;
  database->notes().save(changed);
  add(u"c"_s);
  index.refresh();
  EXPECT_EQ(index.documents().size(), 2);
  EXPECT_EQ(lines(view), u"b a"_s);
}

TEST_F(ViewContent, AViewThatIsGoneSaysSoAndItsIndexGoesToo) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}}), other = addView({});
  add(u"a"_s);
  ViewIndex index(*database, view);
  index.refresh();
  database->notes().remove(view);
  try {
    index.refresh();
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), enginefault::UnknownNote);
    EXPECT_TRUE(error.description().contains(path()));
  }
  lines(other);
  IndexHead head;
  EXPECT_FALSE(IndexTables(*database).readHead(view, head));
}

TEST_F(ViewContent, IsKeptFromOneUseToTheNext) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"a"_s);
  IndexHead head;
  ASSERT_TRUE(IndexTables(*database).readHead(view, head));
  EXPECT_EQ(head.change, database->versions().changeSequence());
  database.reset();
  database = Database::open(path());
  // What is kept is used: a row that nobody would make shows it.
  IndexTables(*database).writeRow(view, {QByteArray("\x01\x00\x00\x00\x01", 5), 0, {}});
  ViewIndex kept(*database, view);
  kept.refresh();
  EXPECT_EQ(kept.documents().size(), 2);
  dropViewIndexes(*database);
  EXPECT_EQ(lines(view), u"a"_s);
}

TEST_F(ViewContent, IsMadeAnewWhenAnOlderProgramLaidOutItsTables) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"b"_s);
  add(u"a"_s);
  database->connection().execute(
      "CREATE TABLE view_index (view INTEGER PRIMARY KEY, digest BLOB, change INTEGER, moment INTEGER,"
      " folder_change INTEGER);"
      "CREATE TABLE view_row (view INTEGER, row BLOB)",
      enginefault::NotSaved);
  EXPECT_EQ(lines(view), u"a b"_s);
  ViewIndex index(*database, view);
  index.refresh();
  EXPECT_EQ(index.count(), 2);
}

// The number is kept beside the rows, so every way in which rows come and go has to keep it right.
TEST_F(ViewContent, KnowsHowManyRowsItHasWithoutCountingThem) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s), separate(u"Tags"_s)}, .hierarchy = true});
  const auto expectRows = [&](qint64 rows) {
    ViewIndex index(*database, view);
    index.refresh();
    EXPECT_EQ(index.notes().size(), rows);
    EXPECT_EQ(index.count(), rows);
  };
  expectRows(0);
  const NoteId main = add(u"main"_s, {{u"Tags"_s, textListValue({u"x"_s, u"y"_s})}});
  expectRows(2);
  const NoteId response = add(u"response"_s, {}, unidOf(main));
  expectRows(4);
  add(u"below"_s, {}, unidOf(response));
  expectRows(6);
  change(main, u"Tags"_s, textListValue({u"x"_s, u"y"_s, u"z"_s}));
  expectRows(9);
  database->notes().remove(response);
  expectRows(3);
  database->notes().remove(main);
  expectRows(0);
}

// Long rows stand apart from the short ones: a document moves between them as it changes.
TEST_F(ViewContent, ADocumentMayGetManyRowsAndLoseThemAgain) {
  const NoteId view = addView({.columns = {separate(u"Tags"_s)}});
  const NoteId note = add(u"a"_s);
  add(u"b"_s);
  QStringList many;
  for (int i = 0; i < 400; ++i) many.append(u"tag %1"_s.arg(i));
  for (const auto& [tags, rows] : {std::pair{QStringList{u"one"_s}, 2}, std::pair{many, 401},
                                   std::pair{QStringList{u"one"_s, u"two"_s}, 3}, std::pair{many, 401}}) {
    change(note, u"Tags"_s, textListValue(tags));
    ViewIndex index(*database, view);
    index.refresh();
    EXPECT_EQ(index.notes().size(), rows);
  }
  database->notes().remove(note);
  EXPECT_EQ(lines(view), u"b"_s);
}

TEST_F(ViewContent, IsUndoneWithTheTransactionThatChangedTheDocuments) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"a"_s);
  {
    Database::Transaction transaction(*database);
    add(u"b"_s);
    EXPECT_EQ(lines(view), u"a b"_s);
  }
  EXPECT_EQ(lines(view), u"a"_s);
}

TEST_F(ViewContent, AFormulaThatAsksForTheDayIsAskedAgainTheNextDay) {
  const NoteId view = addView({.formula = u"SELECT Subject != \"\" & @Today != \"\""_s});
  const NoteId often = addView({.formula = u"SELECT @Now != \"\""_s});
  const NoteId never = addView({.formula = u"SELECT \"@Today\" != \"\""_s});
  for (const auto& [id, clock] :
       {std::pair{view, DocumentRows::Clock::Daily}, std::pair{often, DocumentRows::Clock::EveryMinute},
        std::pair{never, DocumentRows::Clock::Never}}) {
    ViewIndex index(*database, id);
    EXPECT_EQ(index.rows().clock(), clock);
  }
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"a"_s);
  IndexTables tables(*database);
  IndexHead head;
  ASSERT_TRUE(tables.readHead(view, head));
  const qint64 today = head.moment;
  head.moment = today - 1;
  tables.writeHead(view, head, 0);
  tables.clear(view);
  EXPECT_EQ(lines(view), u"a"_s);
  ASSERT_TRUE(tables.readHead(view, head));
  EXPECT_EQ(head.moment, today);
}

TEST_F(ViewContent, ManyChangesAtOnceGiveTheSame) {
  const NoteId view = addView({.columns = {descending(u"Number"_s)}});
  add(u"a"_s);
  EXPECT_EQ(lines(view), u"a"_s);
  Database::Transaction transaction(*database);
  for (int i = 0; i < 2500; ++i) add(u"n"_s, {{u"Number"_s, numberValue(i)}});
  transaction.commit();
  ViewIndex index(*database, view);
  index.refresh();
  EXPECT_EQ(index.count(), 2501);
  EXPECT_EQ(read(index.documents()[1]).find(u"Number")->value, numberValue(2499));
}

// --- Files ---------------------------------------------------------------------------------------------

using ViewFiles = ViewTest;

TEST_F(ViewFiles, TwoConnectionsSeeEachOthersDocumentsAndIndexes) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"b"_s);
  EXPECT_EQ(lines(view), u"b"_s);
  // A thread opens the file for itself.
  QString seen;
  std::thread other([&] {
    const auto second = Database::open(path());
    Note note;
    note.add(u"Subject"_s, itemflag::Summary, textValue(u"a"));
    second->notes().save(note);
    seen = linesOf(*second, view);
  });
  other.join();
  EXPECT_EQ(seen, u"a b"_s);
  EXPECT_EQ(lines(view), u"a b"_s);
}

TEST_F(ViewFiles, AFileThatCannotBeWrittenHasViewsToo) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"b"_s);
  add(u"a"_s);
  const NoteId indexed = addView({.columns = {descending(u"Subject"_s)}});
  EXPECT_EQ(lines(indexed), u"b a"_s);
  database.reset();
  QFile file(path());
  ASSERT_TRUE(file.setPermissions(QFile::ReadOwner));
  const QByteArray before = [&] { return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray(); }();
  file.close();
  database = Database::open(path());
  EXPECT_EQ(lines(view), u"a b"_s);
  EXPECT_EQ(lines(indexed), u"b a"_s);
  database.reset();
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), before);
  file.close();
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(ViewFiles, AFileThatSomebodyElseKeepsLockedHasViewsTooAndKeepsThemOnceItCan) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"a"_s);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(path().toUtf8().constData(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(lines(view), u"a"_s);
  const auto isKept = [&] {
    const Connection second(path(), SQLITE_OPEN_READONLY);
    Statement read(second, "SELECT count(*) FROM sqlite_master WHERE name = 'view_row'",
                   enginefault::CannotOpen);
    Statement::Run run(read);
    return run.step() && run.integer(0) == 1;
  };
  EXPECT_FALSE(isKept());
  sqlite3_close(other);
  EXPECT_EQ(lines(view), u"a"_s);
  EXPECT_FALSE(isKept()) << "what is right already is not made again";
  add(u"b"_s);
  EXPECT_EQ(lines(view), u"a b"_s);
  EXPECT_TRUE(isKept());
}

// The selection takes some milliseconds for each document, so that the index takes much longer than one
// turn; somebody else asks for the file all the time.
TEST_F(ViewFiles, OthersMayWriteWhileAnIndexIsMade) {
  const NoteId view = addView({.formula = u"@For(i := 0; i < 30000; i := i + 1; x := i); SELECT @All"_s,
                               .columns = {sorted(u"Subject"_s)}});
  Database::Transaction transaction(*database);
  for (int i = 0; i < 400; ++i) add(u"z"_s);
  transaction.commit();
  std::atomic<bool> made = false, savedMeanwhile = false;
  std::thread other([&] {
    const auto second = Database::open(path());
    sqlite3_busy_handler(
        second->handle(), [](void*, int turn) { return sqlite3_sleep(1), turn < 60'000 ? 1 : 0; }, nullptr);
    const auto hasBegun = [&] {
      return sqlite3_exec(second->handle(), "SELECT view FROM view_index", nullptr, nullptr, nullptr) ==
             SQLITE_OK;
    };
    while (!made && !hasBegun()) sqlite3_sleep(1);
    Note note;
    note.add(u"Subject"_s, itemflag::Summary, textValue(u"a"));
    second->notes().save(note);
    savedMeanwhile = !made;
  });
  ViewIndex index(*database, view);
  index.refresh();
  made = true;
  other.join();
  EXPECT_TRUE(savedMeanwhile);
  EXPECT_EQ(index.documents().size(), 401) << "what was saved meanwhile is there";
  EXPECT_EQ(subjectOf(*database, index.documents().front()), u"a"_s);
}

TEST_F(ViewFiles, AnIndexThatNobodyFinishedIsMadeAnew) {
  const NoteId view = addView({.columns = {sorted(u"Subject"_s)}});
  add(u"a"_s);
  add(u"b"_s);
  EXPECT_EQ(lines(view), u"a b"_s);
  IndexTables tables(*database);
  IndexHead head;
  ASSERT_TRUE(tables.readHead(view, head));
  head.digest = "somebody who died";
  tables.writeHead(view, head, 0);
  tables.writeRow(view, {QByteArray("\x01\x00\x00\x00\x01", 5), 0, {}});
  EXPECT_EQ(lines(view), u"a b"_s);
}

}  // namespace
}  // namespace lens::testbed
