#include "host/save_file.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include "host/held_file.h"
#include "notes/runtime_error.h"
#include "support/without_rights.h"

#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {
namespace {
using namespace Qt::StringLiterals;

QByteArray bytesOfFile(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : "(missing)";
}

// Whether the bytes came into the file, written in pieces of that size.
bool save(const QString& path, const QByteArray& bytes, qsizetype piece) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return false;
  for (qsizetype at = 0; at < bytes.size(); at += piece) {
    const QByteArray part = bytes.mid(at, piece);
    if (file.write(part) != part.size()) return false;
  }
  return commitWhole(file);
}

#ifdef Q_OS_LINUX
// Wherever the room ends, also within what waits in a buffer until the end: the new file is whole, or the old
// one stays and nothing lies beside it.
TEST(SaveFile, IsWholeOrNotThereWhereverTheRoomEnds) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"list.txt"_s);
  for (const int size : {1, 100, 16'383, 16'384, 16'385, 40'000, 100'000}) {
    const QByteArray bytes(size, 'n');
    for (const int piece : {1'000, 81, 50'000}) {
      for (int room = 0; room <= size; room += room + 999 < size || room == size ? 999 : size - room) {
        QFile::remove(path);
        ASSERT_TRUE(save(path, "old", 3));
        bool saved = false;
        {
          const SmallFiles full{rlim_t(room)};
          saved = save(path, bytes, piece);
        }
        ASSERT_EQ(saved, room >= size) << size << ' ' << piece << ' ' << room;
        ASSERT_EQ(bytesOfFile(path), saved ? bytes : QByteArray("old"))
            << size << ' ' << piece << ' ' << room;
        ASSERT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"list.txt"_s));
      }
    }
  }
}
#endif

TEST(SaveFile, OfNoBytesIsAFile) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"empty.txt"_s);
  EXPECT_TRUE(save(path, {}, 1));
  EXPECT_EQ(bytesOfFile(path), QByteArray());
}

TEST(SaveFile, ThatWasGivenUpLeavesTheOldOne) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"list.txt"_s);
  ASSERT_TRUE(save(path, "old", 3));
  QSaveFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("new");
  file.cancelWriting();
  EXPECT_FALSE(commitWhole(file));
  EXPECT_EQ(bytesOfFile(path), "old");
}

// --- Replacing -----------------------------------------------------------------------------------------

struct Refusal {
  int number = 0;
  QString reason;
};

Refusal refusalOf(const QString& path, const QByteArray& bytes = "new") {
  try {
    replaceWhole(path, bytes);
  } catch (const RuntimeError& error) {
    return {error.number(), error.description()};
  }
  return {};
}

TEST(ReplaceWhole, MakesAndReplacesAFile) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"a.ini"_s);
  for (const QByteArray& bytes : {QByteArray("one"), QByteArray(100'000, 'x'), QByteArray()}) {
    replaceWhole(path, bytes);
    EXPECT_EQ(bytesOfFile(path), bytes);
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"a.ini"_s));
  }
}

TEST(ReplaceWhole, NamesThePlaceWhereNoFileCanBe) {
  const QTemporaryDir directory;
  EXPECT_EQ(refusalOf({}).number, err::PathFileAccess);
  EXPECT_EQ(refusalOf(directory.path()).number, err::PathFileAccess);
  const QString missing = directory.filePath(u"none/a.ini"_s);
  EXPECT_EQ(refusalOf(missing).number, err::PathNotFound);
  EXPECT_TRUE(refusalOf(missing).reason.startsWith(missing));
  const QString path = directory.filePath(u"a.nsf"_s);
  replaceWhole(path, "old");
  const HeldFile held(path);
  EXPECT_EQ(refusalOf(path).number, err::PermissionDenied);
  EXPECT_EQ(bytesOfFile(path), "old");
}

#ifdef Q_OS_LINUX
// Renaming over it would only need the directory.
TEST(ReplaceWhole, LeavesAFileThatMayNotBeChanged) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"a.ini"_s);
  replaceWhole(path, "old");
  const WithoutRights user(directory.path());
  QFile::setPermissions(path, QFile::ReadOwner);
  const Refusal refusal = refusalOf(path);
  EXPECT_EQ(refusal.number, err::PathFileAccess);
  EXPECT_TRUE(refusal.reason.startsWith(path)) << refusal.reason.toStdString();
  EXPECT_EQ(bytesOfFile(path), "old");
  EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"a.ini"_s));
}
#endif

#ifdef Q_OS_LINUX
TEST(ReplaceWhole, IsWholeOrNotDoneWhereverTheRoomEnds) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(u"a.ini"_s);
  const QByteArray bytes(40'000, 'n');
  for (int room = 0; room <= 40'000; room += 1'000) {
    replaceWhole(path, "old");
    Refusal refusal;
    {
      const SmallFiles full{rlim_t(room)};
      refusal = refusalOf(path, bytes);
    }
    ASSERT_EQ(refusal.number, room < 40'000 ? err::PathFileAccess : 0) << room;
    ASSERT_EQ(bytesOfFile(path), room < 40'000 ? QByteArray("old") : bytes) << room;
  }
}
#endif

}  // namespace
}  // namespace lens
