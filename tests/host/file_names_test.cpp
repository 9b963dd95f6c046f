// Names of files on the disk that come out of documents.
#include "host/file_names.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

#include "notes/literals.h"
#include "notes/runtime_error.h"
#include "support/printers.h"

namespace lens {
namespace {

int safeNameFault(const QString& name) {
  try {
    safeFileName(name);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(SafeFileName, IsTheLastPartWhateverTheSystemOfTheName) {
  for (const char16_t* name :
       {u"a.txt", u"../a.txt", u"/etc/a.txt", u"..\\..\\a.txt", u"C:a.txt", u"C:\\a.txt", u"x/y\\a.txt"})
    EXPECT_EQ(safeFileName(QString::fromUtf16(name)), "a.txt") << QString::fromUtf16(name).toStdString();
  for (const char16_t* name : {u"CONTRACT.pdf", u"COM10.txt", u".profile", u"a b.tar.gz", u"x."})
    EXPECT_EQ(safeFileName(QString::fromUtf16(name)), QString::fromUtf16(name));
}

#ifndef Q_OS_WIN
TEST(SafeFileName, KeepsAColonThatIsNoDrive) {
  EXPECT_EQ(safeFileName(u"Report: Q1.doc"_s), u"Report: Q1.doc"_s);
}
#endif

TEST(SafeFileName, HasAMarkForWhatNoNameMayHold) {
  EXPECT_EQ(safeFileName(u"a\tb\nc.txt"_s), u"a_b_c.txt"_s);
  EXPECT_EQ(safeFileName(u"a\u007F"_s), u"a_"_s);
  EXPECT_EQ(safeFileName(u"a"_s + QChar(0xD800) + u".txt"_s), u"a_.txt"_s);
  EXPECT_EQ(safeFileName(u"a"_s + QChar(0xDC00)), u"a_"_s);
  EXPECT_EQ(safeFileName(u"\U0001F600.txt"_s), u"\U0001F600.txt"_s);
  for (const char16_t* name : {u"", u".", u"..", u"a/", u"x/..", u". .", u" "})
    EXPECT_EQ(safeFileName(QString::fromUtf16(name)), u"attachment"_s)
        << QString::fromUtf16(name).toStdString();
}

TEST(SafeFileName, RefusesDevices) {
  for (const char16_t* name :
       {u"con", u"NUL.txt", u"Aux ", u"aux.c", u"lpt9.tar.gz", u"COM\u00B9", u"dir/prn", u"conin$"})
    EXPECT_EQ(safeNameFault(QString::fromUtf16(name)), 75) << QString::fromUtf16(name).toStdString();
}

// Whatever the name: the file can be written whole, in the directory, under the name that was given out.
TEST(SafeFileName, CanBeWrittenOnThisDiskForEveryCharacterAndLength) {
  const QTemporaryDir directory;
  DistinctFileNames names;
  QStringList given;
  for (int unit = 0; unit < 0x10000; unit += unit < 0x100 ? 1 : 0xFD)
    given += u"a"_s + QChar(unit) + u"b.txt"_s;
  for (int length = 200; length < 300; ++length) given += QString(length, u'x') + u".txt"_s;
  for (int length = 60; length < 300; length += 7)
    given += QString(length, QChar(0x20AC)) + u".txt"_s + QString(length / 20, u'y');
  given += QString(70000, u'z');
  given += u"a."_s + QString(70000, u'z');
  for (const QString& one : given) {
    const QString name = names.take(one);
    QSaveFile file(directory.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(one.toUtf8());
    ASSERT_TRUE(file.commit()) << name.toStdString();
  }
  EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden).size(), given.size());
}

TEST(DistinctFileNames, NumbersNamesThatAreTaken) {
  DistinctFileNames names;
  EXPECT_EQ(names.take(u"a.txt"_s), u"a.txt"_s);
  EXPECT_EQ(names.changes(), QStringList());
  EXPECT_EQ(names.take(u"a.txt"_s), u"a (2).txt"_s);
  EXPECT_EQ(names.take(u"A.TXT"_s), u"A (3).TXT"_s);
  EXPECT_EQ(names.take(u"dir/a.txt"_s), u"a (4).txt"_s);
  EXPECT_EQ(names.take(u"a (5).txt"_s), u"a (5).txt"_s);
  EXPECT_EQ(names.take(u"a.txt"_s), u"a (6).txt"_s);
  EXPECT_EQ(names.take(u"readme"_s), u"readme"_s);
  EXPECT_EQ(names.take(u"README"_s), u"README (2)"_s);
  EXPECT_EQ(names.take(u".profile"_s), u".profile"_s);
  EXPECT_EQ(names.take(u".profile"_s), u".profile (2)"_s);
  EXPECT_EQ(names.take(u""_s), u"attachment"_s);
  EXPECT_EQ(names.take(u".."_s), u"attachment (2)"_s);
  EXPECT_EQ(names.changes().first(), u"\"a.txt\": \"a (2).txt\""_s);
  EXPECT_EQ(names.changes().size(), 8);
}

TEST(DistinctFileNames, TellNamesSoThatTheyCanBeRead) {
  DistinctFileNames names;
  names.take(u"a\nb"_s);
  EXPECT_EQ(names.changes(), QStringList(u"\"a\uFFFDb\": \"a_b\""_s));
  names.take(QString(5000, u'x'));
  EXPECT_LT(names.changes().last().size(), 200);
}

TEST(DistinctFileNames, ManyOfOneNameAreNumberedInOneGo) {
  DistinctFileNames names;
  for (int i = 1; i <= 100000; ++i) names.take(u"a.txt"_s);
  EXPECT_EQ(names.take(u"a.txt"_s), u"a (100001).txt"_s);
}

}  // namespace
}  // namespace lens
