// Files that the program keeps open are neither deleted nor written by its own commands.
#include "host/held_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "host/paths.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

// Made before all else, and so gone after it.
std::unique_ptr<HeldFile> heldToTheEnd;

class HeldFiles : public testing::Test {
 protected:
  QString path(const QString& name) const { return directory.filePath(name); }
  QString make(const QString& name) {
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return path(name);
  }
  static int refusal(const QString& path) {
    try {
      requireNotHeld(path);
    } catch (const RuntimeError& error) {
      EXPECT_TRUE(error.description().contains(path));
      return error.number();
    }
    return 0;
  }

  QTemporaryDir directory;
};

TEST_F(HeldFiles, CountUnderEveryNameUntilTheyAreLetGo) {
  const QString file = make(u"mail.nsf"_s);
  ASSERT_TRUE(QFile::link(file, path(u"link.nsf"_s)));
  EXPECT_EQ(refusal(file), 0);
  {
    const HeldFile one(file), again(file);
    EXPECT_EQ(refusal(file), err::PermissionDenied);
    EXPECT_EQ(refusal(path(u"link.nsf"_s)), err::PermissionDenied);
    EXPECT_EQ(refusal(directory.path() + u"/./mail.nsf"_s), err::PermissionDenied);
    EXPECT_EQ(refusal(path(u"other.nsf"_s)), 0);
    EXPECT_EQ(refusal(directory.path()), 0);
  }
  EXPECT_EQ(refusal(file), 0);
}

TEST_F(HeldFiles, AreLetGoAfterTheEndOfAllElse) {
  const QString file = make(u"mail.nsf"_s);
  const auto holdAndEnd = [&] {
    heldToTheEnd = std::make_unique<HeldFile>(file);
    std::exit(refusal(file) == err::PermissionDenied ? 0 : 1);
  };
  EXPECT_EXIT(holdAndEnd(), testing::ExitedWithCode(0), "");
}

TEST_F(HeldFiles, CountWithTheirJournalsEvenThoseThatAreNotThere) {
  const HeldFile held(make(u"mail.nsf"_s));
  for (const QString& name : {u"mail.nsf-wal"_s, u"mail.nsf-shm"_s, u"mail.nsf-journal"_s})
    EXPECT_EQ(refusal(path(name)), err::PermissionDenied) << name.toStdString();
  EXPECT_EQ(refusal(directory.path() + u"/../"_s + QDir(directory.path()).dirName() + u"/mail.nsf-wal"_s),
            err::PermissionDenied);
  EXPECT_EQ(refusal(path(u"mail.nsf-other"_s)), 0);
  EXPECT_EQ(refusal(path(u"other.nsf-wal"_s)), 0);
}

TEST_F(HeldFiles, DoNotKeepTheirNameFromWhatTookTheirPlace) {
  const QString file = make(u"mail.nsf"_s);
  const HeldFile held(file);
  ASSERT_EQ(std::rename(QFile::encodeName(file).constData(), QFile::encodeName(path(u"moved"_s)).constData()),
            0);
  make(u"mail.nsf"_s);
  EXPECT_EQ(refusal(file), 0);
  EXPECT_EQ(refusal(file + u"-wal"_s), 0);
  EXPECT_EQ(refusal(path(u"moved"_s)), err::PermissionDenied);
}

TEST_F(HeldFiles, AreNotDeleted) {
  const QString file = make(u"mail.nsf"_s);
  const auto deletion = [&] {
    try {
      removeFile(file);
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  };
  {
    const HeldFile held(file);
    EXPECT_EQ(deletion(), err::PermissionDenied);
    EXPECT_TRUE(QFile::exists(file));
  }
  EXPECT_EQ(deletion(), 0);
  EXPECT_FALSE(QFile::exists(file));
}

}  // namespace
}  // namespace lens
