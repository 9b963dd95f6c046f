#include "host/paths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

#include "notes/runtime_error.h"
#include "support/printers.h"
#include "support/without_rights.h"

namespace lens {
namespace {

TEST(HostPath, HasTheHostsSeparator) {
  EXPECT_EQ(hostPath(QStringLiteral("a\\b")), QStringLiteral("a") + QDir::separator() + QStringLiteral("b"));
}

TEST(FindPath, ForgivesTheCaseOfEveryPart) {
  QTemporaryDir directory;
  ASSERT_TRUE(QDir(directory.path()).mkpath(QStringLiteral("Data/Mail")));
  QFile file(directory.filePath(QStringLiteral("Data/Mail/Done.WAV")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_EQ(findPath(directory.filePath(QStringLiteral("data\\mail\\done.wav"))),
            directory.filePath(QStringLiteral("Data/Mail/Done.WAV")));
  EXPECT_EQ(findPath(directory.filePath(QStringLiteral("data/other/done.wav"))), "");
  EXPECT_EQ(findPath(QString()), "");
}

int numberOf(const std::function<void()>& statements) {
  try {
    statements();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(JoinedPath, SeparatesSaveBehindARoot) {
  EXPECT_EQ(joinedPath(QStringLiteral("/ab"), QStringLiteral("x")),
            QStringLiteral("/ab") + QDir::separator() + QStringLiteral("x"));
  EXPECT_EQ(joinedPath(QStringLiteral("/"), QStringLiteral("x")), QStringLiteral("/x"));
}

TEST(RemoveFile, TellsWhyItCannot) {
  const QTemporaryDir directory;
  const QString path = directory.filePath(QStringLiteral("a.txt"));
  EXPECT_EQ(numberOf([&] { removeFile(path); }), 53);
  EXPECT_EQ(numberOf([&] { removeFile(directory.path()); }), 75);
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_EQ(numberOf([&] { removeFile(path); }), 0);
  EXPECT_FALSE(QFile::exists(path));
}

TEST(ExtensionOf, StandsBehindTheLastDotOfTheLastPart) {
  const struct {
    const char16_t *path, *extension;
  } table[] = {{u"c:\\Dumplist.txt", u"txt"},
               {u"c:\\x.y\\list", u""},
               {u"/x.y/list", u""},
               {u"a.", u""},
               {u"", u""},
               {u"a.b.c", u"c"},
               {u".txt", u"txt"},
               {u"a.b/c.d\\e.f", u"f"},
               {u"list", u""},
               {u"c:list", u""}};
  for (const auto& row : table)
    EXPECT_EQ(extensionOf(QString::fromUtf16(row.path)), QString::fromUtf16(row.extension))
        << QString::fromUtf16(row.path).toStdString();
}

TEST(TakesFiles, IsFoundOutInTheDirectory) {
  const QTemporaryDir directory;
  EXPECT_TRUE(takesFiles(directory.path()));
  EXPECT_TRUE(QDir(directory.path()).isEmpty()) << "nothing stays of the trial";
  EXPECT_FALSE(takesFiles(directory.filePath(QStringLiteral("none"))));
  EXPECT_FALSE(takesFiles(QString()));
  QFile file(directory.filePath(QStringLiteral("file")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  EXPECT_FALSE(takesFiles(file.fileName()));
#ifdef Q_OS_LINUX
  const WithoutRights user(directory.path());
  QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::ExeOwner);
  EXPECT_FALSE(takesFiles(directory.path()));
  QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
#endif
}

}  // namespace
}  // namespace lens
