#include "host/paths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

#include "notes/runtime_error.h"
#include "support/printers.h"

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

}  // namespace
}  // namespace lens
