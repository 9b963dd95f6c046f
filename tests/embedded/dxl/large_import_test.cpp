// A large file comes in many transactions and is one change all the same.
#include <sys/wait.h>
#include <unistd.h>

#include <QRandomGenerator>

#include "embedded/store/compaction.h"
#include "embedded/store/database_copy.h"
#include "large_import_fixture.h"

namespace lens {
namespace {

TEST_F(LargeImportTest, NobodySeesAnythingBeforeTheEndAndAllOfItAfterwards) {
  fillDatabase();
  const QStringList before = shown(*database_);
  QStringList during;
  qint64 rows = 0, schema = 0;
  AtElement look(700, [&] {
    elsewhere([&](Database& other) {
      during = shown(other);
      rows = firstNumber(other, "SELECT count(*) FROM note");
      schema = firstNumber(other, "PRAGMA user_version");
    });
  });
  // New documents, replaced ones, one that was deleted, and what a database has once.
  const QByteArray xml = database(
      "<acl><aclentry name='B'/></acl><note class='icon'><item name='$TITLE'><text>"
      "New</text></item></note>" +
          documents(0, 120),
      "title='New' replicaid='8525690100123456'");
  const ImportReport report = runLarge(xml, &look);
  EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  EXPECT_TRUE(look.reached());
  EXPECT_EQ(during, before);
  EXPECT_GT(rows, notesBefore_) << "there was nothing to hide";
  EXPECT_EQ(schema, 5) << "an earlier program would show what is hidden";
  EXPECT_EQ(report.notes, 123);
  EXPECT_EQ(report.replaced, 21);
  QStringList after;
  elsewhere([&](Database& other) { after = shown(other); });
  EXPECT_EQ(after, shown(*database_));
  EXPECT_EQ(after.filter(u"arrived pump"_s).size(), 2 * 121);
  EXPECT_EQ(database_->info().title, u"New"_s);
  EXPECT_EQ(firstNumber(*database_, "PRAGMA user_version"), 4);
  EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM info WHERE key LIKE 'arriving%'"), 0);
}

TEST_F(LargeImportTest, WhoFollowsTheChangesMeetsItAfterwards) {
  fillDatabase();
  qint64 seen = 0;
  AtElement look(700, [&] { elsewhere([&](Database& other) { seen = other.versions().changeSequence(); }); });
  runLarge(database(documents(10, 120)), &look);
  QSet<NoteId> told;
  for (const NoteChange& change : database_->versions().changesSince(seen)) told.insert(change.id);
  EXPECT_EQ(told.size(), 112) << "the icon note tells the title as well";
  const qint64 last = database_->versions().changeSequence();
  Note note;
  database_->notes().save(note);
  EXPECT_EQ(database_->versions().changesSince(last).size(), 1);
}

TEST_F(LargeImportTest, WhatDoesNotComeToItsEndLeavesNothing) {
  fillDatabase();
  const QStringList before = shown(*database_);
  const QByteArray whole =
      database(documents(0, 59) + document(58, "again") + document(60, "x"), "title='New'");
  const ImportReport broken = runLarge(whole.chopped(3));
  EXPECT_EQ(broken.failed.size(), 1);
  EXPECT_EQ(broken.notes, 0);
  expectNothingLeft(before);
  const ImportReport behind = runLarge(whole + "<more/>");
  EXPECT_EQ(behind.failed.size(), 1);
  expectNothingLeft(before);
  const ImportReport foreign = runLarge("<html/>");
  EXPECT_EQ(foreign.failed.size(), 1);
  expectNothingLeft(before);
  struct Cancel : ImportProgress {
    int left = 400;
    bool go(const QString&, qint64, qint64) override { return left-- > 0; }
  } cancel;
  EXPECT_TRUE(runLarge(whole, &cancel).cancelled);
  expectNothingLeft(before);
  EXPECT_EQ(runLarge(whole).notes, 62);
}

TEST_F(LargeImportTest, WhatAProcessLeftThatIsGoneIsRemovedByTheNextOneToOpenTheFile) {
  fillDatabase();
  const QStringList before = shown(*database_);
  const QString path = database_->path(), source = write(database(documents(0, 60)));
  database_.reset();
  const pid_t child = fork();
  if (child == 0) {
    const auto database = Database::open(path);
    AtElement die(400, [] { _exit(7); });
    importLarge(*database, source, &die);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_EQ(WEXITSTATUS(status), 7);
  {
    // Who cannot write sees nothing of it.
    const QFile::Permissions permissions = QFile::permissions(path);
    QFile::setPermissions(path, QFile::ReadOwner);
    const auto readOnly = Database::open(path);
    EXPECT_GT(firstNumber(*readOnly, "SELECT count(*) FROM note"), notesBefore_);
    EXPECT_EQ(shown(*readOnly), before);
    QFile::setPermissions(path, permissions);
  }
  database_ = Database::open(path);
  expectNothingLeft(before);
}

TEST_F(LargeImportTest, ASecondOneAtTheSameTimeIsToldThatAnotherIsUnderWay) {
  ImportReport second;
  int meanwhile = -1;
  const QString path = write(database(documents(0, 60)));
  AtElement start(300, [&] {
    elsewhere([&](Database& other) {
      second = importLarge(other, path);
      meanwhile = other.notes().noteCount(0x7FFF);
    });
  });
  const ImportReport first = importLarge(*database_, path, &start);
  EXPECT_EQ(second.failed.join(u'\n').toStdString(),
            (path + u": "_s + database_->path() + u": another import into this database is under way"_s)
                .toStdString());
  EXPECT_EQ(meanwhile, 0);
  EXPECT_EQ(first.notes, 61);
  EXPECT_EQ(importLarge(*database_, path).replaced, 61);
}

TEST_F(LargeImportTest, TheSameTwiceInAFileIsReplacedByTheLater) {
  const ImportReport report =
      runLarge(database(document(1, "first") + document(2, "x") + document(1, "second")));
  EXPECT_EQ(report.notes, 3);
  EXPECT_EQ(report.replaced, 1);
  Note note;
  ASSERT_TRUE(database_->notes().read(Unid::fromText(QString::fromLatin1(unidOf(1))), note));
  EXPECT_EQ(note.text(u"Subject"), u"second"_s);
}

TEST_F(LargeImportTest, EntitiesMayMakeMoreNotesThanTheFileSeemsToHold) {
  const ImportReport report = runLarge(
      "<!DOCTYPE database [<!ENTITY d \"<document><item name='Subject'><text>x</text></item>"
      "</document>\">]>" +
      database("&d;&d;&d;<document/>&d;"));
  EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  EXPECT_EQ(report.notes, 5);
  EXPECT_EQ(notes(), 6) << "with the icon note";
}

TEST_F(LargeImportTest, NoNoteIdIsLostWhereNobodyElseSaved) {
  const ImportReport report = runLarge(database("<!-- <document> -->" + documents(1, 50)));
  ASSERT_EQ(report.notes, 50);
  Note note;
  database_->notes().save(note);
  EXPECT_LE(note.header.id.value(), 0x8FAu + 4 * 53);
}

TEST_F(LargeImportTest, ACopyOfTheFileMeanwhileHasNothingOfIt) {
  fillDatabase();
  const QStringList before = content(*database_);
  const QString copy = folder_.filePath(u"copy.nsf"_s), pages = folder_.filePath(u"pages.nsf"_s);
  AtElement make(500, [&] {
    elsewhere([&](Database& other) {
      copyDatabase(other, copy);
      copyPages(other.path(), pages);
    });
  });
  runLarge(database(documents(0, 90)), &make);
  for (const QString& path : {copy, pages}) {
    const auto copied = Database::open(path);
    EXPECT_EQ(content(*copied), before) << path.toStdString();
    EXPECT_EQ(firstNumber(*copied, "SELECT count(*) FROM note"), notesBefore_);
    EXPECT_EQ(firstNumber(*copied, "SELECT count(*) FROM object"), objectsBefore_);
    EXPECT_EQ(firstNumber(*copied, "PRAGMA user_version"), 4);
  }
}

TEST_F(LargeImportTest, CompactionAndRemovalAreRefusedMeanwhile) {
  int refused = 0;
  AtElement work(300, [&] {
    elsewhere([&](Database& other) {
      try {
        compact(other);
      } catch (const RuntimeError&) {
        ++refused;
      }
      try {
        other.removeFile();
      } catch (const RuntimeError&) {
        ++refused;
      }
    });
  });
  EXPECT_EQ(runLarge(database(documents(0, 60)), &work).notes, 61);
  EXPECT_EQ(refused, 2);
  compact(*database_);
  EXPECT_EQ(shown(*database_).filter(u"scanned"_s).filter(u"arrived"_s).size(), 61);
  EXPECT_EQ(firstNumber(*database_, "SELECT count(*) FROM object"), 9);
}

TEST_F(LargeImportTest, AmongSmallFilesItHasItsPlace) {
  write(database(documents(1, 3, "small")), u"d/1.dxl"_s);
  write(database(documents(2, 60, "large")), u"d/2.dxl"_s);
  write(database(documents(3, 4, "last")), u"d/3.dxl"_s);
  ImportReport report;
  DxlImporter importer(*database_);
  importer.setLarge({5000, {0, 0}});
  importer.importFiles({folder_.filePath(u"d"_s)}, report);
  EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  EXPECT_EQ(report.notes, 3 + 59 + 2);
  EXPECT_EQ(report.replaced, 4);
  const auto subject = [&](int number) {
    Note note;
    database_->notes().read(Unid::fromText(QString::fromLatin1(unidOf(number))), note);
    return note.text(u"Subject").section(u' ', 0, 0);
  };
  EXPECT_EQ(subject(1), u"small"_s);
  EXPECT_EQ(subject(2), u"large"_s);
  EXPECT_EQ(subject(3), u"last"_s);
  EXPECT_EQ(subject(4), u"last"_s);
  EXPECT_EQ(subject(5), u"large"_s);
}

TEST_F(LargeImportTest, WithinATransactionOfTheCallerItIsAPartOfThat) {
  write(database(documents(1, 60)), u"d/1.dxl"_s);
  const QStringList before = shown(*database_);
  {
    Database::Transaction transaction(*database_);
    ImportReport report;
    DxlImporter importer(*database_);
    importer.setLarge({1, {0, 0}});
    importer.importFiles({folder_.filePath(u"d"_s)}, report);
    EXPECT_EQ(report.notes, 60);
  }
  EXPECT_EQ(shown(*database_), before);
}

// A file with everything that an import treats in a way of its own, out of few notes.
class RandomFile {
 public:
  explicit RandomFile(quint32 seed) : random_(seed) {}
  QByteArray next() {
    QByteArray xml = "<database xmlns='http://www.lotus.com/dxl'";
    if (random_.bounded(2)) xml += " title='T" + QByteArray::number(random_.bounded(99)) + "'";
    if (random_.bounded(3) == 0) xml += " templatename='StdR4PublicAddressBook'";
    xml += '>';
    for (int left = random_.bounded(60); left > 0; --left) xml += note();
    return xml + "</database>";
  }

 private:
  QByteArray text() { return "<text>" + QByteArray::number(random_.bounded(1000)) + "</text>"; }
  QByteArray note() {
    const QByteArray item =
        "<item name='I" + QByteArray::number(random_.bounded(3)) + "'>" + text() + "</item>";
    switch (random_.bounded(49) / 4) {
      case 0:
        return "<acl><aclentry name='N" + QByteArray::number(random_.bounded(9)) + "'/></acl>";
      case 1:
        return "<note class='icon'>" + item + "</note>";
      case 2:
        return "<note class='acl'>" + item + "</note>";
      case 3:
        return "<launchsettings><noteslaunch whenopened='x" + QByteArray::number(random_.bounded(9)) +
               "'/></launchsettings>";
      case 4:
        return "<form name='F" + QByteArray::number(random_.bounded(3)) + "'/>";
      case 5:
        return "<document>" + item + "</document>";
      case 6:
        return document("<item name='$FILE'><object><file name='a' size='300'><filedata>" +
                        QByteArray(300, char(random_.bounded(256))).toBase64() +
                        "</filedata></file></object></item>");
      case 12:
        return document("<item name='Large'><text>" + QByteArray(3'000'000, 'l') +
                        "</text></item><item name='Larger'><text>" + QByteArray(2'000'000, 'm') +
                        "</text></item>");
      default:
        return document(item);
    }
  }
  QByteArray document(const QByteArray& content) {
    const QByteArray unid =
        "AB0011223344556677889900" + QByteArray::number(random_.bounded(25)).rightJustified(8, '0');
    return "<document><noteinfo unid='" + unid + "' sequence='" + QByteArray::number(1 + random_.bounded(9)) +
           "'><revised><datetime>20240311T09124" + QByteArray::number(random_.bounded(9)) +
           ",00+01</datetime></revised></noteinfo>" + content + "</document>";
  }
  QRandomGenerator random_;
};

TEST_F(LargeImportTest, InTurnsOrInOneTransactionItComesToTheSame) {
  const int rounds = qEnvironmentVariableIsSet("LENS_SOAK") ? 200 : 4;
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    RandomFile files(quint32(round + 1));
    const auto whole = Database::create(folder_.filePath(u"w%1.nsf"_s.arg(round)), {});
    const auto turns = Database::create(folder_.filePath(u"t%1.nsf"_s.arg(round)), {});
    for (int file = 0; file < 3; ++file) {
      const QString path = write(files.next());
      ImportReport one;
      DxlImporter(*whole).importFile(path, one);
      const ImportReport many = importLarge(*turns, path, nullptr, {2, 0});
      ASSERT_EQ(one.text(), many.text());
      ASSERT_EQ(content(*whole), content(*turns));
      for (const auto& database : {whole, turns}) {
        NoteVersion version;
        const Unid unid = Unid::fromText(QString::fromLatin1(unidOf(file + round % 20)));
        if (database->versions().findVersion(unid, version) && version.live)
          database->notes().remove(version.id, file == 0);
      }
    }
  }
}

}  // namespace
}  // namespace lens
