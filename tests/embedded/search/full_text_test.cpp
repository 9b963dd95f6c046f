// The full-text index of a database and what queries find in it.
#include "embedded/search/full_text.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <thread>

#include "embedded/model/support/test_workspace.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;
using testbed::noteOf;
using testbed::raised;
using testbed::richValue;
using testbed::TestWorkspace;

// Names in the place of the numbers of fields, which are given in the order in which they are met.
void nameFields(const Database& database, QStringList& lines) {
  sqlite3_stmt* statement = nullptr;
  ASSERT_EQ(
      sqlite3_prepare_v2(database.handle(), "SELECT id, name FROM full_text_field", -1, &statement, nullptr),
      SQLITE_OK);
  while (sqlite3_step(statement) == SQLITE_ROW)
    lines.replaceInStrings(
        QChar(0xE000) + QString::number(sqlite3_column_int(statement, 0)) + QChar(0xE000),
        QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 1))) + u':');
  sqlite3_finalize(statement);
}

// Every word of the index with its document, column and place.
QStringList contentsOf(const Database& database) {
  const auto rows = [&](const char* sql, QStringList& lines) {
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database.handle());
    while (sqlite3_step(statement) == SQLITE_ROW) {
      QStringList cells;
      for (int column = 0; column < sqlite3_column_count(statement); ++column)
        cells.append(
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, column))));
      lines.append(cells.join(u' '));
    }
    sqlite3_finalize(statement);
  };
  sqlite3_exec(
      database.handle(),
      "CREATE VIRTUAL TABLE IF NOT EXISTS temp.every_word USING fts5vocab(main, full_text, instance)",
      nullptr, nullptr, nullptr);
  QStringList lines;
  rows("SELECT doc, col, offset, term FROM temp.every_word ORDER BY 1, 2, 3", lines);
  rows(
      "SELECT v.note, f.name, v.kind, v.value FROM full_text_value v JOIN full_text_field f ON f.id = v.field"
      " ORDER BY 1, 2, 3, 4",
      lines);
  nameFields(database, lines);
  return lines;
}

struct FullText : ::testing::Test {
  NoteId add(const QString& subject, const QString& body = {}) {
    QVector<testbed::NamedValue> items{{u"Form"_s, textValue(u"Memo")}, {u"Subject"_s, textValue(subject)}};
    if (!body.isEmpty()) items.push_back({u"Body"_s, richValue(body), 0});
    return t.add(items);
  }
  QVector<NoteId> find(const QString& query, qsizetype most = 0) {
    return fullTextSearch(*t.store, query, most);
  }
  // In order of the ID.
  QVector<NoteId> found(const QString& query) {
    QVector<NoteId> ids = find(query);
    std::sort(ids.begin(), ids.end());
    return ids;
  }
  using Ids = QVector<NoteId>;
  // As a program that is cut short in its first build leaves it.
  void createHalf(int notes) {
    const IndexWork work{[&](qint64, qint64) { return --notes > 0; }, 0};
    EXPECT_FALSE(createFullTextIndex(*t.store, work));
  }
  TestWorkspace t;
};

// Another program at the same file, which does not wait.
class Neighbour {
 public:
  explicit Neighbour(const Database& database) {
    EXPECT_EQ(sqlite3_open(database.path().toUtf8().constData(), &handle_), SQLITE_OK);
  }
  ~Neighbour() { sqlite3_close(handle_); }
  bool run(const char* sql) { return sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK; }

 private:
  sqlite3* handle_ = nullptr;
};

struct LetterBox : FullText {
  NoteId pump = add(u"Pump house report"_s, u"The old harbour needs a new pump"_s);
  NoteId house = add(u"House of the pump"_s, u"nothing else"_s);
  NoteId harbour = add(u"Harbour dues"_s, u"Ships pay for the quay"_s);
  NoteId accents = add(u"R\u00E9sum\u00E9 f\u00FCr \u00C5sa"_s);
  NoteId amounts = t.add({{u"Amount"_s, numberListValue({10, 20.5})},
                          {u"Due"_s, timeValue(timeDateOfDate(QDate(2024, 3, 18)))},
                          {u"Tags"_s, textListValue({u"red wine"_s, u"glass house"_s})}});
  NoteId sent = t.add({{u"Sent"_s, timeValue(timeDateOf(DateTime{QDate(2024, 3, 18), QTime(14, 30)}))},
                       {u"Amount"_s, numberValue(-3)}});
  NoteId attached = t.addFile(u"Quarterly Figures.xlsx"_s, "x");
  NoteId mime = t.addMime("Content-Type: text/html\r\n\r\n<p class=\"hidden\">Visible <b>words</b></p>");
  NoteId profile =
      t.add({{u"$Name"_s, textValue(u"$profile_005pumps_")}, {u"Subject"_s, textValue(u"pump")}});
  NoteId form = t.add({{u"$TITLE"_s, textValue(u"pump form")}}, noteclass::Form);
  LetterBox() { createFullTextIndex(*t.store); }
};

TEST_F(LetterBox, FindsDocumentsByWords) {
  EXPECT_EQ(found(u"pump"_s), Ids({pump, house}));
  EXPECT_EQ(found(u"PUMP house"_s), Ids({pump})) << "side by side in this order";
  EXPECT_EQ(found(u"pump and harbour"_s), Ids({pump})) << "in different items";
  EXPECT_EQ(found(u"ships or report"_s), Ids({pump, harbour}));
  EXPECT_EQ(found(u"ships, report"_s), Ids({pump, harbour}));
  EXPECT_EQ(found(u"house and not harbour"_s), Ids({house, amounts}));
  EXPECT_EQ(found(u"house not harbour"_s), Ids({house, amounts}));
  EXPECT_EQ(found(u"not (pump or quay or house)"_s), Ids({accents, sent, attached, mime}));
  EXPECT_EQ(found(u"not pump or pump"_s).size(), 8);
  EXPECT_EQ(found(u"(ships or pump) & (old | dues)"_s), Ids({pump, harbour}));
  EXPECT_EQ(found(u"harbor"_s), Ids());
}

TEST_F(LetterBox, FindsWordsOfAField) {
  EXPECT_EQ(found(u"FIELD Subject CONTAINS pump"_s), Ids({pump, house}));
  EXPECT_EQ(found(u"FIELD body CONTAINS pump"_s), Ids({pump}));
  EXPECT_EQ(found(u"[SUBJECT] = harbour"_s), Ids({harbour}));
  EXPECT_EQ(found(u"FIELD Subject CONTAINS (pump and not report)"_s), Ids({house}));
  EXPECT_EQ(found(u"FIELD Subject CONTAINS \"pump house\""_s), Ids({pump}));
  EXPECT_EQ(found(u"FIELD Nowhere CONTAINS pump"_s), Ids());
  EXPECT_EQ(found(u"NOT FIELD Nowhere CONTAINS pump"_s).size(), 8);
  EXPECT_EQ(found(u"FIELD Subject CONTAINS Memo"_s), Ids());
}

TEST_F(LetterBox, FindsWordsByWildcards) {
  EXPECT_EQ(found(u"pum*"_s), Ids({pump, house}));
  EXPECT_EQ(found(u"h?rbour"_s), Ids({pump, harbour}));
  EXPECT_EQ(found(u"*bour"_s), Ids({pump, harbour}));
  EXPECT_EQ(found(u"*u?e"_s), Ids({pump, house, accents, amounts})) << "house, resume";
  EXPECT_EQ(found(u"p?mp ho*"_s), Ids({pump}));
  EXPECT_EQ(found(u"p* house"_s), Ids({pump}));
  EXPECT_EQ(found(u"field Subject contains har*"_s), Ids({harbour}));
  EXPECT_EQ(found(u"field Subject contains *our"_s), Ids({harbour}));
  EXPECT_EQ(found(u"zz?z"_s), Ids());
}

TEST_F(LetterBox, NeitherCaseNorAccentsCount) {
  EXPECT_EQ(found(u"resume"_s), Ids({accents}));
  EXPECT_EQ(found(u"R\u00C9SUM\u00C9 fur asa"_s), Ids({accents}));
  EXPECT_EQ(found(u"h\u00E4rbour"_s), Ids({pump, harbour}));
}

TEST_F(LetterBox, NumbersAndDatesAreWordsAndCanBeCompared) {
  EXPECT_EQ(found(u"20.5"_s), Ids({amounts}));
  EXPECT_EQ(found(u"2024-03-18"_s), Ids({amounts, sent}));
  EXPECT_EQ(found(u"[Amount] = 10"_s), Ids({amounts}));
  EXPECT_EQ(found(u"[Amount] > 10"_s), Ids({amounts})) << "one of its values";
  EXPECT_EQ(found(u"[Amount] >= 20.5"_s), Ids({amounts}));
  EXPECT_EQ(found(u"[Amount] > 20.5"_s), Ids());
  EXPECT_EQ(found(u"[Amount] < 10"_s), Ids({sent}));
  EXPECT_EQ(found(u"[Amount] <= 10"_s), Ids({amounts, sent}));
  EXPECT_EQ(found(u"[Amount] < 0 or pump"_s), Ids({pump, house, sent}));
  EXPECT_EQ(found(u"[Amount] < 100 and not [Amount] < 0"_s), Ids({amounts}));
  EXPECT_EQ(found(u"not [Amount] < 0 and [Due] = 2024-03-18"_s), Ids({amounts}));
  EXPECT_EQ(found(u"[Sent] = 2024-03-18"_s), Ids({sent})) << "any time of the day";
  EXPECT_EQ(found(u"[Sent] > 2024-03-18"_s), Ids());
  EXPECT_EQ(found(u"[Sent] >= 2024-03-18"_s), Ids({sent}));
  EXPECT_EQ(found(u"[Due] < 2024-03-19"_s), Ids({amounts}));
  EXPECT_EQ(found(u"[Due] < 2024-03-18"_s), Ids());
  EXPECT_EQ(raised([&] { find(u"[Subject] < pump"_s); }), kQueryError);
  // A mistake is told whatever the rest of the query finds.
  EXPECT_EQ(raised([&] { find(u"nosuchword & [Subject] < pump"_s); }), kQueryError);
}

TEST_F(LetterBox, FindsListsAttachmentsAndMimeBodies) {
  EXPECT_EQ(found(u"red wine"_s), Ids({amounts}));
  EXPECT_EQ(found(u"wine glass"_s), Ids()) << "a phrase ends with its entry";
  EXPECT_EQ(found(u"report memo"_s), Ids());
  EXPECT_EQ(found(u"memo pump"_s), Ids()) << "and with its item";
  EXPECT_EQ(found(u"quarterly figures"_s), Ids({attached}));
  EXPECT_EQ(found(u"field $FILE contains xlsx"_s), Ids({attached}));
  EXPECT_EQ(found(u"visible words"_s), Ids({mime}));
  EXPECT_EQ(found(u"hidden"_s), Ids());
}

TEST_F(LetterBox, FindsWordsOfEveryPieceOfALongText) {
  const NoteId pieces = t.add({{u"Body"_s, richValue(u"the beginning"_s), 0},
                               {u"Body"_s, richValue(u"xylophone in the middle"_s), 0},
                               {u"body"_s, richValue(u"zither at the end"_s), 0}});
  for (const QString& query : {u"xylophone"_s, u"FIELD Body CONTAINS zither"_s, u"beginning AND zither"_s})
    EXPECT_EQ(found(query), QVector<NoteId>{pieces}) << query.toStdString();
}

TEST_F(LetterBox, GivesTheBestFirstAndNoMoreThanAsked) {
  const NoteId best = add(u"quay quay quay"_s);
  const QVector<NoteId> all = find(u"quay"_s);
  EXPECT_EQ(all, Ids({best, harbour}));
  EXPECT_EQ(find(u"quay"_s, 1), Ids({best}));
  EXPECT_EQ(find(u"quay"_s, 10), all);
}

TEST_F(LetterBox, NothingIsFoundByNothing) {
  EXPECT_EQ(find(QString()), Ids());
  EXPECT_EQ(find(u" \t\r\n"_s), Ids());
}

TEST_F(LetterBox, LearnsOfEveryChange) {
  const NoteId late = add(u"pump again"_s);
  EXPECT_EQ(found(u"pump"_s), Ids({pump, house, late}));
  Note note;
  ASSERT_TRUE(t.store->notes().read(house, note));
  note.find(u"Subject")->value = textValue(u"Castle");
  t.store->notes().save(note);
  t.store->notes().remove(pump);
  EXPECT_EQ(found(u"pump"_s), Ids({late}));
  t.store->notes().remove(late, false);
  EXPECT_EQ(found(u"pump"_s), Ids());
  EXPECT_EQ(found(u"castle"_s), Ids({house}));
  note.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_001x_"));
  t.store->notes().save(note);
  EXPECT_EQ(found(u"castle"_s), Ids()) << "it became a profile";
}

// What users may send to get at more than words: all of it is words, or a mistake that is told.
TEST_F(LetterBox, NothingOfAQueryReachesTheIndexUnquoted) {
  for (const QString& query : {u"NEAR(pump house)"_s,
                               u"words:pump"_s,
                               u"{words fields} pump"_s,
                               u"pump^2"_s,
                               u"-pump"_s,
                               u"^pump"_s,
                               u"pump + house"_s,
                               u"a\"b"_s,
                               u"\"pump\"\"house\""_s,
                               u"'; DROP TABLE note; --"_s,
                               u"pump\0house"_s,
                               u"pump \" OR 1=1"_s,
                               u"\uE0001\uE000pump"_s,
                               u"\uE002"_s,
                               u"field \" contains x"_s,
                               u"\xD800 pump"_s,
                               u"pump*house*"_s,
                               u"*\""_s,
                               u"col:*"_s,
                               u"[a\"b] contains pump"_s}) {
    const int number = raised([&] { find(query); });
    EXPECT_TRUE(number == 0 || number == kQueryError) << query.toStdString() << ": " << number;
  }
  EXPECT_EQ(found(u"-pump"_s), Ids({pump, house}));
  EXPECT_EQ(found(u"pump + house"_s), Ids({pump}));
  EXPECT_EQ(found(u"words:pump"_s), Ids());
  EXPECT_EQ(raised([&] { find(QString(1024 * 1024, u'p')); }), kQueryError);
  EXPECT_EQ(raised([&] { find(QString(100'000, u'(')); }), kQueryError);
  EXPECT_EQ(t.store->notes().noteCount(noteclass::Document), 9);
}

TEST_F(LetterBox, DeepAndWideQueriesAreAnswered) {
  QString deep = u"pump"_s, wide = u"pump"_s;
  for (int i = 0; i < 25; ++i) deep = u"(nothing%1 or (x%1, (not y%1 & %2)))"_s.arg(i).arg(deep);
  for (int i = 0; i < 1500; ++i) wide += u" or w%1"_s.arg(i);
  EXPECT_EQ(raised([&] { find(deep); }), kQueryError) << "75 groups";
  deep = u"pump"_s;
  for (int i = 0; i < 20; ++i) deep = u"(zzz%1 or (x%1, (not y%1 & %2)))"_s.arg(i).arg(deep);
  EXPECT_EQ(found(deep), Ids({pump, house}));
  EXPECT_EQ(found(wide), Ids({pump, house}));
  EXPECT_EQ(found(wide.replace(u" or "_s, u" not "_s)), Ids({pump, house}));
}

TEST_F(LetterBox, AWildcardThatFitsTooMuchIsAMistake) {
  for (int i = 0; i < 6; ++i) {
    QString many;
    for (int n = 0; n < 100; ++n) many += u" q%1%2z"_s.arg(i).arg(n);
    add(many);
  }
  EXPECT_EQ(raised([&] { find(u"q*z"_s); }), kQueryError);
  EXPECT_EQ(raised([&] { find(u"q1*z"_s); }), 0);
  EXPECT_EQ(raised([&] { find(u"q1*z q2*z"_s); }), kQueryError);
  EXPECT_EQ(found(u"q*"_s).size(), 8) << "the end of a word needs no list; there are quay and quarterly, too";
}

TEST_F(LetterBox, WildcardsWithoutNumberAreAMistake) {
  const auto query = [](int patterns) {
    QStringList words;
    for (int i = 0; i < patterns; ++i) words.append(u"*ump"_s);
    return words.join(u" or "_s);
  };
  EXPECT_EQ(found(query(50)), Ids({pump, house}));
  EXPECT_EQ(raised([&] { find(query(51)); }), kQueryError) << "each walks over all words";
  for (const QChar letter : u"abcdefgh"_s) add(u"x%1y xx%1y"_s.arg(letter));
  EXPECT_EQ(raised([&] { find(u"*y *y "_s + u"pump "_s.repeated(1000)); }), kQueryError)
      << "256 phrases of 1,002 words";
}

TEST_F(FullText, WithoutAnIndexASearchNamesTheDatabase) {
  EXPECT_FALSE(hasFullTextIndex(*t.store));
  try {
    find(u"pump"_s);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kNoFullTextIndex);
    EXPECT_TRUE(error.description().contains(u"mail.nsf"_s));
  }
  EXPECT_EQ(raised([&] { find(QString()); }), kNoFullTextIndex);
  createFullTextIndex(*t.store);
  EXPECT_TRUE(hasFullTextIndex(*t.store));
  EXPECT_EQ(find(u"pump"_s), Ids());
  dropFullTextIndex(*t.store);
  EXPECT_FALSE(hasFullTextIndex(*t.store));
}

TEST_F(FullText, ATableOfThatNameFromElsewhereIsNoIndex) {
  const NoteId id = add(u"pump"_s);
  sqlite3_exec(t.store->handle(), "CREATE TABLE full_text (words, fields)", nullptr, nullptr, nullptr);
  EXPECT_FALSE(hasFullTextIndex(*t.store));
  createFullTextIndex(*t.store);
  EXPECT_EQ(find(u"pump"_s), Ids({id}));
}

TEST_F(FullText, AfterAnyChangesTheIndexIsWhatAFreshOneWouldBe) {
  QRandomGenerator random(3);
  QVector<NoteId> ids;
  createFullTextIndex(*t.store);
  const auto text = [&] {
    QString words;
    for (int n = random.bounded(6); n > 0; --n) words += u"word%1 "_s.arg(random.bounded(40));
    return words;
  };
  for (int round = 0; round < 30; ++round) {
    for (int n = random.bounded(12); n > 0; --n) {
      const NoteId old = ids.isEmpty() ? NoteId() : ids[random.bounded(int(ids.size()))];
      Note note;
      switch (random.bounded(4)) {
        case 0:
          t.store->notes().remove(old, random.bounded(2));
          break;
        case 1:
          if (t.store->notes().read(old, note)) {
            note.items[0].value = textValue(text());
            note.add(u"Number"_s, itemflag::Summary, numberValue(random.bounded(10)));
            t.store->notes().save(note);
          }
          break;
        default:
          ids.push_back(add(text(), text()));
      }
    }
    if (random.bounded(2)) refreshFullTextIndex(*t.store);
  }
  refreshFullTextIndex(*t.store);
  const QStringList kept = contentsOf(*t.store);
  dropFullTextIndex(*t.store);
  createFullTextIndex(*t.store);
  EXPECT_GT(kept.size(), 100);
  EXPECT_EQ(kept, contentsOf(*t.store));
}

TEST_F(FullText, OthersWriteWhileTheIndexIsBuilt) {
  for (int i = 0; i < 5; ++i) add(u"pump"_s);
  Neighbour neighbour(*t.store);
  QVector<qint64> steps;
  const auto go = [&](qint64 done, qint64 total) {
    EXPECT_LT(done, total);
    EXPECT_TRUE(neighbour.run("BEGIN IMMEDIATE; COMMIT")) << "the build holds the file at step " << done;
    if (steps.isEmpty()) add(u"pump, saved meanwhile"_s);
    steps.push_back(done);
    return true;
  };
  EXPECT_TRUE(createFullTextIndex(*t.store, {go, 0}));
  EXPECT_EQ(steps, QVector<qint64>({1, 2, 3, 4}));
  EXPECT_EQ(found(u"pump"_s).size(), 6);
}

TEST_F(FullText, ABuildThatWasEndedGoesOnWhereItStopped) {
  QVector<NoteId> ids;
  for (int i = 0; i < 6; ++i) ids.push_back(add(u"pump %1"_s.arg(i)));
  createHalf(4);
  EXPECT_FALSE(hasFullTextIndex(*t.store)) << "it cannot be asked yet";
  EXPECT_FALSE(t.mail().get(u"ISINDEXED"_s).boolean());
  EXPECT_EQ(raised([&] { find(u"pump"_s); }), kNoFullTextIndex);
  EXPECT_TRUE(refreshFullTextIndex(*t.store));
  EXPECT_FALSE(hasFullTextIndex(*t.store));
  t.store->notes().remove(ids[1]);
  int steps = 0;
  EXPECT_TRUE(createFullTextIndex(*t.store, {[&](qint64, qint64) { return ++steps > 0; }, 0}));
  EXPECT_EQ(steps, 2) << "two documents and the deletion";
  EXPECT_EQ(found(u"pump"_s), Ids({ids[0], ids[2], ids[3], ids[4], ids[5]}));
}

TEST_F(FullText, ABuildInStepsAmongChangesIsWhatOneInQuietWouldBe) {
  QRandomGenerator random(7);
  QVector<NoteId> ids;
  for (int i = 0; i < 25; ++i) ids.push_back(add(u"word%1 pump"_s.arg(random.bounded(9)), u"body"_s));
  int changes = 30;
  const auto change = [&](qint64, qint64) {
    if (changes-- <= 0) return true;
    Note note;
    const NoteId id = ids[random.bounded(int(ids.size()))];
    if (random.bounded(3) == 0) {
      t.store->notes().remove(id, random.bounded(2));
    } else if (t.store->notes().read(id, note)) {
      note.find(u"Subject")->value = textValue(u"changed%1"_s.arg(random.bounded(9)));
      note.add(u"Extra%1"_s.arg(random.bounded(3)), itemflag::Summary, numberValue(changes));
      t.store->notes().save(note);
    }
    if (random.bounded(4) == 0) ids.push_back(add(u"late%1"_s.arg(random.bounded(9))));
    return changes % 5 != 0;  // ended now and then
  };
  while (!createFullTextIndex(*t.store, {change, 0})) continue;
  const QStringList kept = contentsOf(*t.store);
  dropFullTextIndex(*t.store);
  createFullTextIndex(*t.store);
  EXPECT_GT(kept.size(), 60);
  EXPECT_EQ(kept, contentsOf(*t.store));
}

TEST_F(FullText, TwoWhoBuildTheSameIndexShareTheWork) {
  for (int i = 0; i < 6; ++i) add(u"pump"_s);
  int steps = 0;
  bool elsewhere = false;
  const auto go = [&](qint64, qint64) {
    if (++steps == 2)
      std::thread([&] { elsewhere = createFullTextIndex(*Database::open(t.store->path())); }).join();
    return true;
  };
  EXPECT_TRUE(createFullTextIndex(*t.store, {go, 0}));
  EXPECT_TRUE(elsewhere);
  EXPECT_EQ(steps, 2) << "the other one did the rest";
  EXPECT_EQ(found(u"pump"_s).size(), 6);
}

TEST_F(FullText, AnIndexThatIsDroppedWhileItIsBuiltStaysAway) {
  for (int i = 0; i < 4; ++i) add(u"pump"_s);
  EXPECT_TRUE(
      createFullTextIndex(*t.store, {[&](qint64, qint64) { return dropFullTextIndex(*t.store), true; }, 0}));
  EXPECT_FALSE(hasFullTextIndex(*t.store));
}

TEST_F(FullText, ABusyFileIsSearchedWithoutWaitingAndMissesNothing) {
  const NoteId one = add(u"pump"_s), two = add(u"pump"_s), three = add(u"pump"_s);
  createFullTextIndex(*t.store);
  Note note;
  ASSERT_TRUE(t.store->notes().read(two, note));
  note.find(u"Subject")->value = textValue(u"harbour");
  t.store->notes().save(note);
  const NoteId fresh = add(u"pump house"_s);
  t.store->notes().remove(three);
  Neighbour neighbour(*t.store);
  ASSERT_TRUE(neighbour.run("BEGIN IMMEDIATE"));
  QElapsedTimer waited;
  waited.start();
  EXPECT_EQ(found(u"pump"_s), Ids({one, fresh}));
  EXPECT_LT(waited.elapsed(), 4000) << "a save waits five seconds, a query does not";
  EXPECT_EQ(found(u"FIELD Subject CONTAINS p?mp"_s), Ids({one, fresh}));
  EXPECT_EQ(found(u"not pump"_s), Ids({two}));
  EXPECT_EQ(raised([&] { find(u"pump and"_s); }), kQueryError);
  ASSERT_TRUE(neighbour.run("COMMIT"));
  EXPECT_EQ(found(u"pump"_s), Ids({one, fresh}));
  EXPECT_EQ(found(u"harbour"_s), Ids({two}));
}

TEST_F(FullText, ABusyFileWithVeryManyChangesSaysWhatItCannotDo) {
  createFullTextIndex(*t.store);
  Database::Transaction transaction(*t.store);
  for (int i = 0; i < 1001; ++i) add(u"pump"_s);
  transaction.commit();
  Neighbour neighbour(*t.store);
  ASSERT_TRUE(neighbour.run("BEGIN IMMEDIATE"));
  try {
    find(u"pump"_s);
    FAIL() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), enginefault::NotSaved);
    EXPECT_TRUE(error.description().contains(u"mail.nsf: the full-text index lacks 1001 changes"_s))
        << error.description().toStdString();
  }
  ASSERT_TRUE(neighbour.run("COMMIT"));
  EXPECT_EQ(found(u"pump"_s).size(), 1001);
}

TEST_F(FullText, RangesOfTimesAreCompared) {
  const auto day = [](int number) { return timeDateOfDate(QDate(2024, 3, number)); };
  const auto hour = [](int number, int at) {
    return timeDateOf(DateTime{QDate(2024, 3, number), QTime(at, 0)});
  };
  const NoteId days = t.add({{u"When"_s, timeListValue({}, {{day(10), day(14)}})}});
  const NoteId hours = t.add({{u"When"_s, timeListValue({}, {{hour(18, 9), hour(20, 17)}})}});
  const NoteId one = t.add({{u"When"_s, timeValue(hour(12, 8))}});
  const NoteId both = t.add({{u"When"_s, timeListValue({day(1)}, {{day(30), day(28)}})}});
  createFullTextIndex(*t.store);
  EXPECT_EQ(found(u"[When] = 2024-03-12"_s), Ids({days, one})) << "within a range";
  EXPECT_EQ(found(u"[When] = 2024-03-19"_s), Ids({hours}));
  EXPECT_EQ(found(u"[When] = 2024-03-29"_s), Ids({both})) << "whichever end comes first";
  EXPECT_EQ(found(u"[When] = 2024-03-15"_s), Ids());
  EXPECT_EQ(found(u"[When] = 2024-03-12 - 2024-03-18"_s), Ids({days, hours, one})) << "a range is asked for";
  EXPECT_EQ(found(u"[When] = \"2024-03-18 - 2024-03-12\""_s), Ids({days, hours, one}));
  EXPECT_EQ(found(u"[When] = 2024-03-15 - 2024-03-17"_s), Ids());
  EXPECT_EQ(found(u"[When] < 2024-03-12 - 2024-03-18"_s), Ids({days, both}));
  EXPECT_EQ(found(u"[When] > 2024-03-12 - 2024-03-18"_s), Ids({hours, both}));
  EXPECT_EQ(found(u"[When] >= 2024-03-12 - 2024-03-28"_s), Ids({days, hours, one, both}));
  EXPECT_EQ(found(u"[When] <= 2024-03-02 - 2024-03-10"_s), Ids({days, both}));
  t.store->notes().remove(hours);
  EXPECT_EQ(found(u"[When] = 2024-03-19"_s), Ids());
}

TEST_F(FullText, WhatIsUndoneWasNeverIndexed) {
  createFullTextIndex(*t.store);
  const NoteId before = add(u"pump"_s);
  {
    Database::Transaction transaction(*t.store);
    add(u"pump"_s);
    EXPECT_EQ(found(u"pump"_s).size(), 2);
  }
  EXPECT_EQ(found(u"pump"_s), Ids({before}));
}

TEST_F(FullText, AFileThatCannotBeWrittenIsSearchedWithWhatItsIndexLacks) {
  const NoteId one = add(u"pump"_s), two = add(u"pump"_s);
  createFullTextIndex(*t.store);
  const NoteId late = add(u"pump, too late"_s);
  t.store->notes().remove(two);
  const QString path = t.store->path(), copy = t.file(u"copy.nsf"_s);
  ASSERT_EQ(
      sqlite3_wal_checkpoint_v2(t.store->handle(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr),
      SQLITE_OK);
  ASSERT_TRUE(QFile::copy(path, copy));
  ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner));
  const auto sealed = Database::open(copy);
  EXPECT_TRUE(hasFullTextIndex(*sealed));
  EXPECT_EQ(fullTextSearch(*sealed, u"pump", 0), Ids({one, late}));
  EXPECT_EQ(fullTextSearch(*sealed, u"p?mp l?te", 0), Ids());
  EXPECT_EQ(raised([&] { createFullTextIndex(*sealed); }), enginefault::NotSaved);
}

TEST_F(FullText, TwoConnectionsKeepOneIndex) {
  createFullTextIndex(*t.store);
  const NoteId one = add(u"pump"_s);
  QVector<NoteId> elsewhere;
  NoteId two;
  std::thread([&] {
    const auto other = Database::open(t.store->path());
    elsewhere = fullTextSearch(*other, u"pump", 0);
    Note note = noteOf({{u"Subject"_s, textValue(u"pump")}});
    other->notes().save(note);
    two = note.header.id;
    refreshFullTextIndex(*other);
  }).join();
  EXPECT_EQ(elsewhere, Ids({one}));
  EXPECT_EQ(found(u"pump"_s), Ids({one, two}));
}

TEST_F(FullText, ADamagedDocumentIsLeftOut) {
  const NoteId good = add(u"pump"_s), bad = add(u"pump"_s);
  createFullTextIndex(*t.store);
  const QByteArray sql = "UPDATE note SET items = x'544C49310100000000', change = change + 10 WHERE id = " +
                         QByteArray::number(bad.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(found(u"pump"_s), Ids({good}));
}

TEST_F(FullText, ADamagedIndexIsToldAndCanBeMadeAnew) {
  const NoteId id = add(u"pump"_s);
  createFullTextIndex(*t.store);
  for (const char* sql :
       {"UPDATE full_text_kept SET fields = x'FFFFFFFF00'", "UPDATE full_text_kept SET fields = x'0102'",
        "UPDATE full_text_kept SET fields = 5"}) {
    ASSERT_EQ(sqlite3_exec(t.store->handle(), sql, nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(found(u"pump"_s), Ids({id}));
    Note note;
    ASSERT_TRUE(t.store->notes().read(id, note));
    t.store->notes().save(note);
    EXPECT_EQ(raised([&] { find(u"pump"_s); }), enginefault::Damaged);
    createFullTextIndex(*t.store);
    EXPECT_EQ(found(u"pump"_s), Ids({id}));
  }
}

TEST_F(LetterBox, IsAskedOfADatabaseInTheObjectModel) {
  const Object database = t.mail();
  EXPECT_TRUE(database.get(u"ISindexed"_s).boolean());
  const Object documents = database.call(u"FtSearch"_s, u"field subject contains harbour"_s, 0).object();
  ASSERT_EQ(documents.get(u"Count"_s).number(), 1);
  EXPECT_EQ(documents.call(u"GetFirstDocument"_s).object().get(u"NOTEID"_s).text(), t.hex(harbour));
  EXPECT_EQ(database.call(u"FTSEARCH"_s, u"pump"_s, 1).object().get(u"count"_s).number(), 1);
  EXPECT_EQ(database.call(u"FTSEARCH"_s, QString(), 0).object().get(u"count"_s).number(), 0);
  EXPECT_EQ(raised([&] { database.call(u"FTSEARCH"_s, u"pump and"_s, 0); }), kQueryError);
  dropFullTextIndex(*t.store);
  EXPECT_FALSE(database.get(u"isIndexed"_s).boolean());
  EXPECT_EQ(raised([&] { database.call(u"FTSEARCH"_s, u"pump"_s, 0); }), kNoFullTextIndex);
}

}  // namespace
}  // namespace lens
