// The rule of the house: includes go down the list of folders, never up, in the engine's rooms as in the
// whole; no two files need each other; and only the named places may know the embedded engine and the real
// client.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <algorithm>

namespace {
using namespace Qt::StringLiterals;

// From the top of the house to its ground.
const QStringList kFloors = {u"app"_s,       u"command"_s,  u"bulk"_s,    u"design"_s, u"editing"_s,
                             u"inspector"_s, u"lookup"_s,   u"tools"_s,   u"shell"_s,  u"client"_s,
                             u"controls"_s,  u"embedded"_s, u"records"_s, u"host"_s,   u"notes"_s};
const QStringList kSubsystems = {u"bulk"_s,      u"design"_s, u"editing"_s,
                                 u"inspector"_s, u"lookup"_s, u"tools"_s};
const QStringList kMayKnowTheEngine = {u"app"_s, u"command"_s, u"client"_s, u"embedded"_s};
// A command needs no display, so it knows no window.
const QStringList kWindows = {u"bulk"_s,     u"design"_s,    u"editing"_s, u"client"_s,
                              u"controls"_s, u"inspector"_s, u"lookup"_s,  u"tools"_s};

struct Include {
  QString file;
  QString header;
  QString from;  // folders at the top
  QString to;
};

QVector<Include> includesOfTheHouse() {
  static const QRegularExpression line(u"^#include \"([a-z]+)/([^\"]+)\""_s,
                                       QRegularExpression::MultilineOption);
  const QString root = QStringLiteral(LENS_SOURCE_DIR "/src/");
  QVector<Include> all;
  QDirIterator files(root, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    if (!file.open(QIODevice::ReadOnly)) continue;
    const QString name = file.fileName().mid(root.size());
    if (!name.contains(u'/')) continue;  // main.cpp may know everything
    const QString text = QString::fromUtf8(file.readAll());
    for (const QRegularExpressionMatch& match : line.globalMatch(text))
      all.push_back(
          {name, match.captured(1) + u'/' + match.captured(2), name.section(u'/', 0, 0), match.captured(1)});
  }
  return all;
}

TEST(Layers, AreAllKnown) {
  const QVector<Include> includes = includesOfTheHouse();
  EXPECT_GT(includes.size(), 100);
  for (const Include& include : includes)
    EXPECT_TRUE(kFloors.contains(include.from) && kFloors.contains(include.to)) << include.file.toStdString();
}

TEST(Layers, IncludeOnlyWhatStandsBelow) {
  for (const Include& include : includesOfTheHouse()) {
    // The desktop host draws with controls; the host's contract stands below them.
    if (include.file.startsWith(u"host/desktop_host")) continue;
    EXPECT_LE(kFloors.indexOf(include.from), kFloors.indexOf(include.to))
        << include.file.toStdString() << " includes " << include.to.toStdString();
  }
}

TEST(Layers, SubsystemsDoNotKnowEachOther) {
  for (const Include& include : includesOfTheHouse())
    EXPECT_FALSE(include.from != include.to && kSubsystems.contains(include.from) &&
                 kSubsystems.contains(include.to))
        << include.file.toStdString() << " includes " << include.to.toStdString();
}

TEST(Layers, CommandsKnowNoWindow) {
  int seen = 0;
  for (const Include& include : includesOfTheHouse()) {
    if (include.from != u"command") continue;
    ++seen;
    EXPECT_FALSE(kWindows.contains(include.to))
        << include.file.toStdString() << " includes " << include.to.toStdString();
  }
  EXPECT_GT(seen, 20);
}

TEST(Layers, OnlyTheApplicationTheCommandsAndTheClientWindowKnowTheEngine) {
  for (const Include& include : includesOfTheHouse())
    EXPECT_TRUE(include.to != u"embedded" || kMayKnowTheEngine.contains(include.from))
        << include.file.toStdString();
}

// What calls the real client stands behind the doors like the engine does. The desktop of Windows has
// automation servers of its own, which are called the same way.
TEST(Layers, OnlyTheApplicationAndTheDesktopOfWindowsKnowHowTheClientIsCalled) {
  static const QRegularExpression calls(u"^notes/(automation|library)/"_s);
  int seen = 0;
  for (const Include& include : includesOfTheHouse()) {
    if (!include.header.contains(calls) || include.file.contains(calls)) continue;
    ++seen;
    EXPECT_TRUE(include.from == u"app" || include.file.startsWith(u"host/windows/"_s))
        << include.file.toStdString() << " includes " << include.header.toStdString();
  }
  EXPECT_GT(seen, 2);
}

// The rooms of the engine from its ground up. Rooms of one floor do not know each other.
const QVector<QStringList> kEngineFloors = {{u"format"_s},
                                            {u"files"_s},
                                            {u"store"_s, u"formula"_s, u"richtext"_s, u"mime"_s},
                                            {u"formula_context"_s},
                                            {u"design"_s, u"dxl"_s, u"nsf"_s, u"help"_s},
                                            {u"search"_s},
                                            {u"views"_s},
                                            {u"replication"_s, u"checks"_s},
                                            {u"workspace"_s},
                                            {u"evaluation"_s},
                                            {u"console"_s},
                                            {u"model"_s, u"capi"_s}};
// These read and write values and nothing else: they are tested and measured without a database.
const QStringList kNeedOnlyTheFormats = {u"formula"_s, u"richtext"_s, u"mime"_s};
const QStringList kTheirNeeds = {u"embedded/format/"_s, u"notes/"_s};

int floorOf(const QString& room) {
  for (int floor = 0; floor < kEngineFloors.size(); ++floor)
    if (kEngineFloors[floor].contains(room)) return floor;
  return -1;
}

TEST(Engine, RoomsIncludeOnlyWhatStandsBelow) {
  int between = 0;
  for (const Include& include : includesOfTheHouse()) {
    if (include.from != u"embedded" || include.to != u"embedded") continue;
    const QString from = include.file.section(u'/', 1, 1), to = include.header.section(u'/', 1, 1);
    EXPECT_GE(floorOf(from), 0) << include.file.toStdString() << " stands in no known room";
    EXPECT_GE(floorOf(to), 0) << include.header.toStdString() << " stands in no known room";
    if (from == to) continue;
    ++between;
    EXPECT_GT(floorOf(from), floorOf(to))
        << include.file.toStdString() << " includes " << include.header.toStdString();
  }
  EXPECT_GT(between, 100);
}

TEST(Engine, LanguagesNeedOnlyTheFormats) {
  int seen = 0;
  for (const Include& include : includesOfTheHouse()) {
    const QString room = include.file.section(u'/', 1, 1);
    if (include.from != u"embedded" || !kNeedOnlyTheFormats.contains(room)) continue;
    ++seen;
    EXPECT_TRUE(include.header.startsWith(u"embedded/"_s + room + u'/') ||
                std::any_of(kTheirNeeds.begin(), kTheirNeeds.end(),
                            [&](const QString& need) { return include.header.startsWith(need); }))
        << include.file.toStdString() << " includes " << include.header.toStdString();
  }
  EXPECT_GT(seen, 100);
}

// SQLite is the store's affair, and of those who keep tables of their own in its files.
TEST(Engine, LanguagesKnowNoSqlite) {
  for (const QString& room : kNeedOnlyTheFormats) {
    QDirIterator files(QStringLiteral(LENS_SOURCE_DIR "/src/embedded/") + room, {u"*.cpp"_s, u"*.h"_s},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      QFile file(files.next());
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      EXPECT_FALSE(file.readAll().contains("sqlite")) << file.fileName().toStdString();
    }
  }
}

// A header and its source are one unit. What a unit needs, its sources included, never needs the unit.
TEST(Files, NeedEachOtherInOneDirectionOnly) {
  QHash<QString, QSet<QString>> needs;
  for (const Include& include : includesOfTheHouse()) {
    const QString from = include.file.section(u'.', 0, 0), to = include.header.section(u'.', 0, 0);
    if (from != to) needs[from].insert(to);
  }
  const auto leadsTo = [&](const QString& from, const QString& to) {
    QSet<QString> seen{from};
    QStringList open{from};
    while (!open.isEmpty()) {
      for (const QString& next : needs.value(open.takeLast())) {
        if (next == to) return true;
        if (seen.contains(next)) continue;
        seen.insert(next);
        open.append(next);
      }
    }
    return false;
  };
  for (auto unit = needs.begin(); unit != needs.end(); ++unit)
    EXPECT_FALSE(leadsTo(unit.key(), unit.key()))
        << unit.key().toStdString() << " needs itself by way of others";
}

TEST(Files, NoTwoHeadersHaveOneName) {
  QHash<QString, QString> known;
  QDirIterator files(QStringLiteral(LENS_SOURCE_DIR "/src"), {u"*.h"_s}, QDir::Files,
                     QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next(), name = files.fileName();
    EXPECT_FALSE(known.contains(name)) << path.toStdString() << " and " << known.value(name).toStdString();
    known.insert(name, path);
  }
  EXPECT_GT(known.size(), 100);
}

// A file that is written in place, or put there without asking whether all of it found room, is cut on a full
// disk.
TEST(Files, AreWrittenWholeByOneRule) {
  static const QRegularExpression plainFile(u"\\bQFile \\w+[({]"_s), commit(u"\\bfile_?\\.commit\\("_s);
  const QString root = QStringLiteral(LENS_SOURCE_DIR "/src/");
  QDirIterator files(root, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
  int savers = 0;
  while (files.hasNext()) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const bool saves = text.contains(u"QSaveFile"_s);
    savers += saves;
    EXPECT_FALSE(!saves && text.contains(u"WriteOnly"_s) && plainFile.match(text).hasMatch())
        << file.fileName().toStdString();
    EXPECT_FALSE(commit.match(text).hasMatch() && !file.fileName().endsWith(u"host/save_file.cpp"_s))
        << file.fileName().toStdString();
  }
  EXPECT_GT(savers, 2);
}

}  // namespace
