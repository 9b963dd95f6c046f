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

TEST(FileNameOf, IsTheLastPartWhateverTheSystemOfTheName) {
  for (const char16_t* name :
       {u"a.txt", u"../a.txt", u"/etc/a.txt", u"..\\..\\a.txt", u"C:a.txt", u"x/y\\a.txt"})
    EXPECT_EQ(fileNameOf(QString::fromUtf16(name)), "a.txt") << QString::fromUtf16(name).toStdString();
  EXPECT_EQ(fileNameOf(QStringLiteral("CONTRACT.pdf")), "CONTRACT.pdf");
  EXPECT_EQ(fileNameOf(QStringLiteral("COM10.txt")), "COM10.txt");
  EXPECT_EQ(fileNameOf(QStringLiteral(".profile")), ".profile");
}

TEST(FileNameOf, RefusesWhatNamesNoFile) {
  for (const char16_t* name : {u"", u".", u"..", u"a/", u"x/..", u". .", u"a\u0001b", u"con", u"NUL.txt",
                               u"Aux ", u"lpt9.tar.gz", u"COM\u00B9", u"dir/prn", u"conin$"})
    EXPECT_EQ(numberOf([&] { fileNameOf(QString::fromUtf16(name)); }), 75)
        << QString::fromUtf16(name).toStdString();
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
