// Others work with a database while a large file is imported into it.
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <atomic>
#include <iostream>
#include <optional>

#include "embedded/search/full_text.h"
#include "embedded/support/view_fixture.h"
#include "embedded/views/view_index.h"
#include "large_import_fixture.h"

namespace lens {
namespace {

// Works in a thread of its own, with its own connection, until it is destroyed.
class Other {
 public:
  Other(const QString& path, std::function<void(Database&)> step)
      : thread_([this, path, step = std::move(step)] {
          const auto database = Database::open(path);
          while (!ended_) step(*database);
        }) {}
  ~Other() {
    ended_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

void append(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::Append));
  file.write(bytes);
}

Note noteOf(const QString& subject) {
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"));
  note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
  return note;
}

const int kMany = qEnvironmentVariableIsSet("LENS_SOAK") ? 1'000'000 : 15'000;

// An import that holds the database all the time would keep the first save waiting to its end.
TEST_F(LargeImportTest, EverySaveOfOthersHasItsTurnWithinASecond) {
  const QString path = write("<database>");
  for (int number = 1; number <= kMany; number += 1000)
    append(path, documents(number, std::min(number + 999, kMany)));
  append(path, "</database>");
  qint64 longest = 0, took = 0;
  int saved = 0, tooSoon = 0;
  {
    ImportReport report;
    const Other saver(database_->path(), [&](Database& other) {
      QElapsedTimer clock;
      clock.start();
      Note note = noteOf(u"meanwhile"_s);
      ASSERT_NO_THROW(other.notes().save(note));
      longest = std::max(longest, clock.elapsed());
      ++saved;
      const int documents = other.notes().noteCount(noteclass::Document);
      if (documents != saved && documents != saved + kMany) ++tooSoon;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    });
    QElapsedTimer clock;
    clock.start();
    report = importLarge(*database_, path, nullptr, {});
    took = clock.elapsed();
    EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  }
  std::cout << "an import of " << kMany << " documents in " << took << " ms, " << saved
            << " saves, the longest in " << longest << " ms\n";
  EXPECT_GT(took, 1000) << "the file is too small to show anything";
  EXPECT_LT(longest, 2000);
  EXPECT_GT(saved, 2);
  EXPECT_EQ(tooSoon, 0);
  EXPECT_EQ(database_->notes().noteCount(noteclass::Document), kMany + saved);
}

TEST_F(LargeImportTest, AUnidThatIsArrivingIsRefusedWithItsReason) {
  const Unid unid = Unid::fromText(QString::fromLatin1(unidOf(1)));
  QSet<QString> reasons;
  {
    std::optional<Other> saver;
    const auto save = [&](Database& other) {
      Note note = noteOf(u"of somebody else"_s);
      note.header.unid = unid;
      try {
        NoteVersion there;
        if (!other.versions().findVersion(note.header.unid, there)) other.notes().save(note);
      } catch (const RuntimeError& error) {
        reasons.insert(error.description());
      }
    };
    AtElement start(500, [&] { saver.emplace(database_->path(), save); });
    const ImportReport report = runLarge(database(documents(1, 300)), &start, {10, 120});
    EXPECT_EQ(report.notes, 300);
  }
  const QString expected =
      u": the change was not saved (a note with the UNID %1 is being imported)"_s.arg(unid.text());
  EXPECT_TRUE(reasons.remove(database_->path() + expected));
  // Who looked before the end and saved behind it.
  for (const QString& reason : std::as_const(reasons))
    EXPECT_TRUE(reason.contains(u"there is a note with the UNID"_s)) << reason.toStdString();
}

class LargeImportIndexes : public LargeImportTest {
 protected:
  LargeImportIndexes() {
    Note note = testbed::viewNote(u"All"_s, {.columns = {testbed::sorted(u"Subject"_s)}});
    database_->notes().save(note);
    view_ = note.header.id;
    createFullTextIndex(*database_);
  }
  static QVector<NoteId> viewed(Database& database, NoteId view) {
    ViewIndex index(database, view);
    index.refresh();
    QVector<NoteId> notes = index.documents();
    std::sort(notes.begin(), notes.end());
    return notes;
  }
  static QVector<NoteId> found(Database& database, const QString& query) {
    QVector<NoteId> notes = fullTextSearch(database, query, 0);
    std::sort(notes.begin(), notes.end());
    return notes;
  }
  NoteId view_;
};

TEST_F(LargeImportIndexes, RefreshedInBetweenAreAsThoseThatAreMadeAfterwards) {
  fillDatabase();
  qint64 rounds = 0, tooSoon = 0;
  {
    QRandomGenerator random(3);
    QVector<NoteId> mine;
    bool over = false;
    const Other reader(database_->path(), [&](Database& other) {
      try {
        Note note = noteOf(u"pump of another one"_s);
        if (mine.size() > 3 && random.bounded(3) == 0)
          other.notes().remove(mine.takeAt(random.bounded(int(mine.size()))), random.bounded(2));
        else
          other.notes().save(note), mine.push_back(note.header.id);
        if (random.bounded(3)) viewed(other, view_);
        if (random.bounded(3)) refreshFullTextIndex(other, {{}, 1});
        const qsizetype arrived = found(other, u"arrived"_s).size();
        if (arrived != 0 && arrived != 281) ++tooSoon;
        over = over || arrived != 0;
        if (!over) ++rounds;
      } catch (const RuntimeError& error) {
        // Somebody is writing just now.
        EXPECT_EQ(error.number(), int(enginefault::NotSaved)) << error.description().toStdString();
      }
    });
    const ImportReport report = runLarge(database(documents(20, 300)), nullptr, {30, 110});
    EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  }
  EXPECT_GT(rounds, 1);
  EXPECT_EQ(tooSoon, 0);
  const QVector<NoteId> view = viewed(*database_, view_), arrived = found(*database_, u"arrived"_s),
                        pump = found(*database_, u"pump"_s);
  dropViewIndexes(*database_);
  dropFullTextIndex(*database_);
  createFullTextIndex(*database_);
  EXPECT_EQ(view, viewed(*database_, view_));
  EXPECT_EQ(arrived, found(*database_, u"arrived"_s));
  EXPECT_EQ(pump, found(*database_, u"pump"_s));
  EXPECT_EQ(arrived.size(), 281);
  EXPECT_EQ(view.size(), database_->notes().noteCount(noteclass::Document));
}

}  // namespace
}  // namespace lens
