// The settings file byte for byte, without any window.
#include "bulk/settings_text.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include "notes/runtime_error.h"
#include "support/printers.h"

namespace lens {
namespace {

const SettingsKeys kKeys{u"Hub/Acme"_s, u"Local"_s, u"old"_s, u"new"_s};
const QByteArray kWrittenKeys =
    "[TessalyAndDocContent]\r\nSource=Hub/Acme\r\nDestination=Local\r\ntxtFind=old\r\ntxtReplace=new\r\n";

// The rows of a section; "(none)" where it counts as absent.
QStringList rowsIn(const QByteArray& file, const char* header) {
  QStringList rows;
  return readSettingsSection(file, header, rows) ? rows : QStringList(u"(none)"_s);
}
int numberOf(const QByteArray& file, const char* key) {
  try {
    settingsKey(file, key);
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

TEST(SettingsText, OfTheFirstStartHoldsThePresentKeys) {
  EXPECT_EQ(newSettingsFile(kKeys), kWrittenKeys);
  EXPECT_EQ(newSettingsFile({u"Local"_s, u"Local"_s, {}, {}}),
            "[TessalyAndDocContent]\r\nSource=Local\r\nDestination=Local\r\ntxtFind=\r\ntxtReplace=\r\n");
}

TEST(SettingsText, HasTheListsBehindEverythingElse) {
  const QByteArray saved =
      savedSettingsFile({}, kKeys, {{u"a.nsf"_s, u"b.nsf"_s}, {u"c.nsf"_s}, {u"F: x"_s}});
  EXPECT_EQ(saved,
            kWrittenKeys + "[SourceDB]\r\na.nsf\r\nb.nsf\r\n[DestDB]\r\nc.nsf\r\n[Fields]\r\nF: x\r\n");
  EXPECT_EQ(savedSettingsFile(saved, kKeys, {{}, {}, {}}),
            kWrittenKeys + "[SourceDB]\r\n[DestDB]\r\n[Fields]\r\n")
      << "the former lists do not pile up";
  const QByteArray odd =
      "; "
      "mine\n[Other]\rSource=x\r[fields]\nbare\n;c\n\n[tessalyanddoccontent]\nKeep=1\nsource=y\n[WVDB]\nz\n["
      "Last]\nq";
  EXPECT_EQ(savedSettingsFile(odd, kKeys, {{u"s"_s}, {}, {}}),
            "; mine\n[Other]\rSource=x\r[tessalyanddoccontent]\nKeep=1\nSource=Hub/Acme\r\n"
            "Destination=Local\r\ntxtFind=old\r\ntxtReplace=new\r\n[Last]\nq\r\n"
            "[SourceDB]\r\ns\r\n[DestDB]\r\n[Fields]\r\n")
      << "all else stays, and an unended line does not take the header in";
}

TEST(SettingsText, KeepsARowOnOneLine) {
  const QByteArray saved =
      savedSettingsFile({}, kKeys, {{u"a\r\n[SourceDB]\nb\rc"_s + QChar(0) + u'd'}, {u"[x"_s, {}}, {}});
  EXPECT_EQ(saved, kWrittenKeys + "[SourceDB]\r\na [SourceDB] b c d\r\n[DestDB]\r\n[x\r\n\r\n[Fields]\r\n");
  EXPECT_EQ(rowsIn(saved, "[SourceDB]"), QStringList(u"a [SourceDB] b c d"_s));
  EXPECT_EQ(savedSettingsFile({}, {u"a\n[DestDB]"_s, {}, {}, {}}, {}).count("\n[DestDB]"), 1);
}

TEST(SettingsText, IsOfTheCodePage) {
  const SettingsKeys keys{u"Größe €"_s, u"Żółw"_s, {}, {}};
  const QByteArray saved = savedSettingsFile({}, keys, {{u"Größe.nsf"_s, u"日.nsf"_s}, {}, {}});
  EXPECT_TRUE(
      saved.contains("Source=Gr\xF6\xDF"
                     "e \x80\r\nDestination=?\xF3?w\r\n"));
  EXPECT_TRUE(
      saved.contains("[SourceDB]\r\nGr\xF6\xDF"
                     "e.nsf\r\n?.nsf\r\n"));
  EXPECT_EQ(settingsKey(saved, "Source"), u"Größe €"_s);
  EXPECT_EQ(rowsIn(saved, "[SourceDB]"), QStringList({u"Größe.nsf"_s, u"?.nsf"_s}));
}

// --- Keys ----------------------------------------------------------------------------------------------

TEST(SettingsKey, IsEmptyWhereItIsMissing) {
  EXPECT_EQ(settingsKey({}, "Source"), QString());
  EXPECT_EQ(settingsKey("[Other]\nSource=x\n", "Source"), QString());
  EXPECT_EQ(settingsKey("[TESSALYANDDOCCONTENT]\nSOURCE= 'x' \n", "Source"), u"x"_s);
}

TEST(SettingsKey, OfAtMost253BytesComesBack) {
  const auto file = [](int length) { return newSettingsFile({QString(length, u'x'), {}, {}, {}}); };
  EXPECT_EQ(settingsKey(file(253), "Source").size(), 253);
  for (const int length : {254, 255, 100'000}) EXPECT_EQ(numberOf(file(length), "Source"), err::InvalidCall);
  EXPECT_EQ(numberOf(newSettingsFile({u'"' + QString(253, u'x') + u'"', {}, {}, {}}), "Source"), 0)
      << "quotes do not come into the buffer";
}

// --- Lists ---------------------------------------------------------------------------------------------

TEST(SettingsSection, IsReadToTheNextLineThatBeginsWithABracket) {
  const QByteArray file = "x\r\n[SourceDB]\r\na\r\n\r\n b \r\n[c\r\nd\r\n[DestDB]\r\ne";
  EXPECT_EQ(rowsIn(file, "[SourceDB]"), QStringList({u"a"_s, u" b "_s}));
  EXPECT_EQ(rowsIn(file, "[DestDB]"), QStringList(u"e"_s));
}

TEST(SettingsSection, HasToBeWrittenJustSo) {
  for (const char* header : {"[sourcedb]", " [SourceDB]", "[SourceDB] ", "[SourceDB];", "SourceDB"})
    EXPECT_EQ(rowsIn(QByteArray(header) + "\r\na\r\n", "[SourceDB]"), QStringList(u"(none)"_s)) << header;
}

TEST(SettingsSection, InTheLastLineCountsAsAbsent) {
  for (const char* end : {"", "\n", "\r", "\r\n"})
    EXPECT_EQ(rowsIn(QByteArray("[a]\n[DestDB]") + end, "[DestDB]"), QStringList(u"(none)"_s));
  EXPECT_EQ(rowsIn("[DestDB]\n\n", "[DestDB]"), QStringList());
}

TEST(SettingsSection, OfAFileOfNoBytesRaises) {
  QStringList rows;
  try {
    readSettingsSection({}, "[DestDB]", rows);
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::InputPastEnd);
  }
  EXPECT_EQ(rowsIn("\r\n", "[DestDB]"), QStringList(u"(none)"_s));
}

TEST(SettingsSection, OfOddFilesIsReadByTheSameRules) {
  EXPECT_EQ(rowsIn("[SourceDB]\ra\r\rb\r[DestDB]\rc", "[SourceDB]"), QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(rowsIn("\xEF\xBB\xBF[SourceDB]\na\n", "[SourceDB]"), QStringList(u"(none)"_s));
  EXPECT_EQ(rowsIn("\xEF\xBB\xBF[x]\n[SourceDB]\na\n", "[SourceDB]"), QStringList(u"a"_s));
  EXPECT_EQ(rowsIn(QByteArray("[SourceDB]\na\0b\n\0\nc\n", 19), "[SourceDB]"),
            QStringList({u"a"_s, QString(), u"c"_s}))
      << "a row ends at its first NUL, as a list takes it";
}

// --- Both together -------------------------------------------------------------------------------------

QString randomText(QRandomGenerator& random) {
  static const QString letters = u"abC=;\" \t[]xyzäöß"_s;
  QString text;
  for (int length = random.bounded(12); length > 0; --length)
    text += letters[random.bounded(quint32(letters.size()))];
  return text;
}
QStringList randomRows(QRandomGenerator& random) {
  QStringList rows;
  for (int count = random.bounded(6); count > 0; --count) rows += randomText(random);
  return rows;
}

// What comes back of rows that are written: empty ones go, and one that begins with "[" ends them all.
QStringList readable(const QStringList& rows) {
  QStringList read;
  for (const QString& row : rows) {
    if (row.startsWith(u'[')) break;
    if (!row.isEmpty()) read += row;
  }
  return read;
}

TEST(SettingsText, BringsBackWhatWasSavedHoweverOften) {
  QRandomGenerator random(42);
  QByteArray file;
  for (int turn = 0; turn < 3'000; ++turn) {
    if (turn % 10 == 0) file.clear();
    const SettingsLists lists{randomRows(random), randomRows(random), randomRows(random)};
    const SettingsKeys keys{randomText(random).remove(u'"').trimmed(), {}, {}, {}};
    file = savedSettingsFile(file, keys, lists);
    SCOPED_TRACE(file.toStdString());
    ASSERT_EQ(settingsKey(file, "Source"), keys.sourceServer);
    // A row may look like one of the headers: it is a header then.
    bool forged = false;
    for (const QStringList& rows : {lists.sourceDatabases, lists.targetDatabases, lists.fields})
      for (const QString& row : rows) forged |= row.startsWith(u'[');
    ASSERT_EQ(rowsIn(file, "[SourceDB]"), readable(lists.sourceDatabases));
    if (forged) continue;
    ASSERT_EQ(rowsIn(file, "[DestDB]"), readable(lists.targetDatabases));
    const bool fieldsInLastLine = lists.fields.isEmpty();
    ASSERT_EQ(rowsIn(file, "[Fields]"), fieldsInLastLine ? QStringList(u"(none)"_s) : readable(lists.fields));
  }
}

}  // namespace
}  // namespace lens
