#include "host/paths.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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

}  // namespace
}  // namespace lens
