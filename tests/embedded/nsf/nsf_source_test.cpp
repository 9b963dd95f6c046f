// The file on disk: what is no plain file, what changes while it is read, what is very large; and that
// nothing of it changes.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "embedded/nsf/nsf_test.h"
#include "embedded/nsf/open_modes.h"

namespace lens::made {
namespace {

class NsfOnDisk : public testing::Test {
 protected:
  NsfOnDisk() {
    file = makeFile(described);
    EXPECT_TRUE(file.write(path));
  }
  std::unique_ptr<NsfDatabase> open(const QString& name) {
    auto source = NsfFileSource::open(name, reason);
    return source ? std::make_unique<NsfDatabase>(std::move(source)) : nullptr;
  }

  QTemporaryDir directory;
  const QString path = directory.filePath(u"real.nsf"_s);
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  MadeFile file;
  QString reason;
};

TEST_F(NsfOnDisk, IsReadAsItWasWritten) {
  const auto read = open(path);
  ASSERT_TRUE(read) << reason.toStdString();
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_EQ(read->report().path, path);
  EXPECT_EQ(read->report().size, file.bytes.size());
}

// Whatever stands at the path: the answer comes at once, with a reason that names it.
TEST_F(NsfOnDisk, WhatIsNoPlainFileIsNotOpened) {
  const QString pipe = directory.filePath(u"pipe.nsf"_s);
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  const QString loop = directory.filePath(u"loop.nsf"_s);
  ASSERT_TRUE(QFile::link(loop, loop));
  for (const QString& name :
       {pipe, loop, directory.path(), directory.filePath(u"missing.nsf"_s), u"/dev/zero"_s, QString()}) {
    EXPECT_EQ(open(name), nullptr) << name.toStdString();
    EXPECT_FALSE(reason.isEmpty()) << name.toStdString();
  }
}

TEST_F(NsfOnDisk, AnEmptyFileIsNoDatabase) {
  const QString empty = directory.filePath(u"empty.nsf"_s);
  writeFile(empty, {});
  const auto read = open(empty);
  EXPECT_TRUE(read ? read->refusal() == NsfRefusal::NotADatabase : !reason.isEmpty());
}

TEST_F(NsfOnDisk, AFileThatCannotBeReadSaysSo) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is kept from this user";
  ASSERT_TRUE(QFile::setPermissions(path, {}));
  EXPECT_EQ(open(path), nullptr);
  EXPECT_FALSE(reason.isEmpty());
}

TEST_F(NsfOnDisk, BytesTimesAndModeStayAsTheyWere) {
  const auto long_ago = timespec{1'000'000'000, 123'000'000};
  const timespec times[2] = {long_ago, long_ago};
  ASSERT_EQ(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
  for (const bool canBeWritten : {true, false}) {
    ASSERT_TRUE(
        QFile::setPermissions(path, canBeWritten ? QFile::ReadOwner | QFile::WriteOwner : QFile::ReadOwner));
    struct stat before {
    }, after{};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &before), 0);
    {
      const auto read = open(path);
      ASSERT_TRUE(read) << reason.toStdString();
      const QVector<int> modes = openModesOf(path);
      EXPECT_FALSE(modes.isEmpty());
      for (const int mode : modes) EXPECT_EQ(mode & O_ACCMODE, O_RDONLY);
      EXPECT_EQ(difference(*read, described).toStdString(), "");
      EXPECT_EQ(objectsDifference(*read, described).toStdString(), "");
      read->acl();
    }
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &after), 0);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_TRUE(contentOf(path) == file.bytes);
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"real.nsf"_s});
    EXPECT_TRUE(openModesOf(path).isEmpty());
  }
}

// Nothing stops another program from writing the file meanwhile.
TEST_F(NsfOnDisk, AFileThatGrowsIsReadAsItWas) {
  const auto read = open(path);
  ASSERT_TRUE(read);
  QFile other(path);
  ASSERT_TRUE(other.open(QIODevice::ReadWrite | QIODevice::Append));
  other.write(QByteArray(100'000, 'g'));
  other.close();
  EXPECT_EQ(difference(*read, described).toStdString(), "");
}

TEST_F(NsfOnDisk, AFileThatShrinksGivesWhatIsLeft) {
  const auto read = open(path);
  ASSERT_TRUE(read);
  const qint64 end = file.notes[ids.plain].body.at + 10;
  ASSERT_TRUE(QFile::resize(path, end));
  int shown = 0;
  read->forEachNote([&](NsfNote& note) {
    ++shown;
    for (const MadeNote& made : described.notes)
      if (made.id == note.header.id.value() && made.id != ids.plain) {
        EXPECT_EQ(difference(note, made).toStdString(), "");
      }
    return true;
  });
  for (const quint32 id : read->objectIds()) read->readPayload(id, [](QByteArrayView) { return true; });
  ASSERT_TRUE(QFile::resize(path, 0));
  read->forEachNote([&](NsfNote&) { return ++shown > 0; });
  QByteArray content;
  EXPECT_FALSE(read->readPayload(ids.accessList,
                                 [&](QByteArrayView piece) {
                                   content.append(piece);
                                   return true;
                                 })
                   .isEmpty());
  EXPECT_FALSE(read->acl().has_value());
  EXPECT_TRUE(read->hasChangedSince());
}

TEST_F(NsfOnDisk, AWrittenSuperblockIsNoticed) {
  const auto read = open(path);
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->hasChangedSince());
  QFile other(path);
  ASSERT_TRUE(other.open(QIODevice::ReadWrite));
  ASSERT_TRUE(other.seek(file.superblocks[1].at + 60));
  other.write("\x1F");
  other.close();
  EXPECT_TRUE(read->hasChangedSince());
}

// Places beyond 4 GB, in a file that takes next to no room.
TEST_F(NsfOnDisk, AVeryLargeFileIsReadWhereItHasSomething) {
  described.hole = qint64(5) << 30;
  const MadeFile large = makeFile(described);
  const QString name = directory.filePath(u"large.nsf"_s);
  if (!large.write(name)) GTEST_SKIP() << "no files of that size here";
  ASSERT_EQ(QFileInfo(name).size(), large.size());
  const auto read = open(name);
  ASSERT_TRUE(read) << reason.toStdString();
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_EQ(objectsDifference(*read, described).toStdString(), "");
  QByteArray content;
  EXPECT_EQ(attachmentOf(*read, noteOf(*read, ids.attached).items[2], content), u"");
  EXPECT_EQ(content, sampleContent());
}

TEST_F(NsfOnDisk, BucketsAreLookedForInAVeryLargeFile) {
  // Every unit of it is looked at.
  described.hole = qint64(qEnvironmentVariableIsSet("LENS_SOAK") ? 4096 : 256) << 20;
  described.severalPages = true;
  const MadeFile large = makeFile(described);
  const QString name = directory.filePath(u"large.nsf"_s);
  if (!large.write(name)) GTEST_SKIP() << "no files of that size here";
  const auto read = open(name);
  ASSERT_TRUE(read) << reason.toStdString();
  EXPECT_EQ(difference(*read, described).toStdString(), "");
  EXPECT_TRUE(read->report().bucketsScanned);
}

TEST_F(NsfOnDisk, ALargeFileOfNothingIsNoDatabase) {
  const QString name = directory.filePath(u"nothing.nsf"_s);
  writeFile(name, {});
  if (!QFile::resize(name, qint64(4) << 30)) GTEST_SKIP() << "no files of that size here";
  const auto read = open(name);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->refusal(), NsfRefusal::NotADatabase);
}

}  // namespace
}  // namespace lens::made
