// What becomes of a real database while it is read: how far that is, how it ends early, and other programs
// that write the file meanwhile.
#include <QDateTime>
#include <QJsonDocument>
#include <algorithm>
#include <utility>

#include "embedded/nsf/open_modes.h"
#include "embedded/nsf/real_databases_fixture.h"

namespace lens {
namespace {

class RealReading : public RealDatabasesTest {};

TEST_F(RealReading, TellHowFarTheReadingIs) {
  QVector<qint64> done;
  qint64 ofAll = 0;
  int opened = 0;
  workspace->watchRealDatabases({[&](const QString& file, qint64 notes, qint64 all) {
                                   EXPECT_EQ(file, path);
                                   EXPECT_LE(notes, all);
                                   if (all == 0) return true;
                                   ofAll = all;
                                   done += notes;
                                   return true;
                                 },
                                 [&](const RealDatabase& real) {
                                   ++opened;
                                   EXPECT_EQ(real.source, path);
                                   EXPECT_EQ(real.warning(), QString());
                                 }});
  const auto copy = open();
  EXPECT_EQ(ofAll, source()->noteIds().size());
  EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
  EXPECT_LT(done.value(0, ofAll), ofAll / 2);
  EXPECT_GE(done.value(done.size() - 1), ofAll / 2);
  const qsizetype told = done.size();
  open();
  EXPECT_EQ(done.size(), told) << "read again";
  EXPECT_EQ(opened, 1);
}

// Wherever it is ended, nothing is left, and the next opening reads the file whole.
TEST_F(RealReading, LeaveNothingOfAReadingThatWasEnded) {
  int asked = 0;
  workspace->watchRealDatabases({[&](const QString&, qint64, qint64) { return ++asked > 0; }, {}});
  open();
  const int all = asked;
  ASSERT_GT(all, 10);
  // LENS_SOAK tries each place.
  const int step = qEnvironmentVariableIsSet("LENS_SOAK") ? 1 : 7;
  for (int end = 0; end < all; end += step) {
    const auto fresh = Workspace::open(directory.filePath(u"workspace%1"_s.arg(end)), Regional(QLocale::c()));
    int left = end;
    fresh->watchRealDatabases({[&](const QString&, qint64, qint64) { return left-- > 0; }, {}});
    QString reason;
    EXPECT_EQ(errorNumber([&] { fresh->database({}, path); }, &reason), enginefault::CannotOpen) << end;
    EXPECT_TRUE(reason.contains(path)) << reason.toStdString();
    EXPECT_FALSE(QFileInfo::exists(fresh->directory() + u"/cache"_s)) << end;
    fresh->watchRealDatabases({});
    EXPECT_EQ(fresh->database({}, path)->notes().state(NoteId(ids.plain)), NoteState::Live);
  }
}

TEST_F(RealReading, CanBeReadBeforeTheyAreOpened) {
  const lens::RealDatabases reading(workspace->directory());
  EXPECT_FALSE(reading.isRead(path));
  EXPECT_FALSE(reading.read(path, [](qint64, qint64) { return false; }));
  EXPECT_FALSE(reading.isRead(path));
  EXPECT_TRUE(reading.read(path, [](qint64, qint64) { return true; }));
  EXPECT_TRUE(reading.isRead(path));
  workspace->watchRealDatabases({[](const QString&, qint64, qint64) { return false; }, {}});
  EXPECT_EQ(open()->notes().state(NoteId(ids.plain)), NoteState::Live) << "read although it was";
}

TEST_F(RealReading, AreHeldForReadingOnlyWhileTheyAreRead) {
  const QByteArray bytes = contentOf(path);
  const QDateTime time = QFileInfo(path).lastModified();
  int looks = 0;
  workspace->watchRealDatabases({[&](const QString&, qint64, qint64) {
                                   const QVector<int> modes = made::openModesOf(path);
                                   looks += int(modes.size());
                                   for (const int mode : modes) EXPECT_EQ(mode & O_ACCMODE, O_RDONLY);
                                   return true;
                                 },
                                 {}});
  open();
  EXPECT_GT(looks, 10);
  EXPECT_TRUE(made::openModesOf(path).isEmpty());
  EXPECT_EQ(contentOf(path), bytes);
  EXPECT_EQ(QFileInfo(path).lastModified(), time);
}

// The copy is of one state, the one that is there in the end.
TEST_F(RealReading, AFileThatIsWrittenMeanwhileIsReadAgain) {
  bool isWritten = false;
  quint32 another = 0;
  workspace->watchRealDatabases({[&](const QString&, qint64 done, qint64) {
                                   if (done > 5 && !std::exchange(isWritten, true)) {
                                     another = described.add(made::document(77, "another"));
                                     described.changed = made::someTime(600'000);
                                     write(path, described);
                                   }
                                   return true;
                                 },
                                 {}});
  const auto copy = open();
  ASSERT_TRUE(isWritten);
  EXPECT_EQ(copy->notes().state(NoteId(another)), NoteState::Live);
  EXPECT_EQ(workspace->realDatabase(*copy)->notesRead, source()->report().notesProven);
  EXPECT_EQ(copies().size(), 1);
}

TEST_F(RealReading, AFileThatIsWrittenAllTheTimeIsRefused) {
  quint32 writes = 0;
  workspace->watchRealDatabases({[&](const QString&, qint64 done, qint64 all) {
                                   if (all == 0 || done != all / 2) return true;
                                   described.changed = made::someTime(600'000 + ++writes);
                                   write(path, described);
                                   return true;
                                 },
                                 {}});
  QString reason;
  EXPECT_EQ(errorNumber([&] { open(); }, &reason), enginefault::CannotOpen);
  EXPECT_TRUE(reason.contains(path) && reason.contains(u"changes"_s)) << reason.toStdString();
  EXPECT_GT(writes, 1u);
  EXPECT_TRUE(copies().isEmpty());
}

TEST_F(RealReading, AFileThatIsCutShortMeanwhileIsNotTakenForWhole) {
  const QByteArray whole = contentOf(path);
  bool isCut = false;
  workspace->watchRealDatabases({[&](const QString&, qint64 done, qint64) {
                                   if (done > 5 && !std::exchange(isCut, true))
                                     QFile::resize(path, whole.size() / 2);
                                   return true;
                                 },
                                 {}});
  const auto copy = open();
  ASSERT_TRUE(isCut);
  EXPECT_FALSE(workspace->realDatabase(*copy)->isComplete);
  EXPECT_TRUE(workspace->realDatabase(*copy)->reportText.contains(u"cut short"_s));
}

TEST_F(RealReading, WhatADeadProcessLeftIsMadeAnew) {
  const QString copy = open()->path(), folder = QFileInfo(copy).path();
  for (const QString& file : {copy, folder + u"/report.json"_s}) {
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::remove(file));
  }
  writeFile(copy, "half a copy");
  ASSERT_TRUE(QFile::setPermissions(copy, QFile::ReadOwner));
  EXPECT_EQ(open()->notes().state(NoteId(ids.plain)), NoteState::Live);
}

TEST_F(RealReading, WarnWhereNotAllCanBeShown) {
  write(path, made::sampleWithALostNote(&ids));
  const auto copy = open();
  const auto real = workspace->realDatabase(*copy);
  EXPECT_EQ(real->notesRead, real->notesFound - 1);
  EXPECT_EQ(real->warning(),
            u"%1 of %2 notes read: not all that the file holds can be shown"_s.arg(real->notesRead)
                .arg(real->notesFound));
  EXPECT_FALSE(QJsonDocument::fromJson(real->reportJson)[u"complete"_s].toBool(true));
}

}  // namespace
}  // namespace lens
