// The rule of the house: includes go down the list of folders, never up, and only the named places may
// know the embedded engine and the real client.

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace {
using namespace Qt::StringLiterals;

// From the top of the house to its ground.
const QStringList kFloors = {u"app"_s,      u"bulk"_s,  u"design"_s, u"editing"_s, u"inspector"_s,
                             u"lookup"_s,   u"tools"_s, u"shell"_s,  u"client"_s,  u"controls"_s,
                             u"embedded"_s, u"host"_s,  u"notes"_s};
const QStringList kSubsystems = {u"bulk"_s,      u"design"_s, u"editing"_s,
                                 u"inspector"_s, u"lookup"_s, u"tools"_s};
const QStringList kMayKnowTheEngine = {u"app"_s, u"client"_s, u"embedded"_s};

struct Include {
  QString file;
  QString from;
  QString to;
};

QVector<Include> includesOfTheHouse() {
  static const QRegularExpression line(u"^#include \"([a-z]+)/"_s, QRegularExpression::MultilineOption);
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
      all.push_back({name, name.section(u'/', 0, 0), match.captured(1)});
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

TEST(Layers, OnlyTheApplicationAndTheClientWindowKnowTheEngine) {
  for (const Include& include : includesOfTheHouse())
    EXPECT_TRUE(include.to != u"embedded" || kMayKnowTheEngine.contains(include.from))
        << include.file.toStdString();
}

// The formula language is tested and measured without a database: of the store it knows how values are
// laid out, and nothing else of the engine.
TEST(Layers, FormulasKnowNoDatabase) {
  static const QRegularExpression line(u"^#include [\"<]([^\">]+)"_s, QRegularExpression::MultilineOption);
  static const QStringList kAllowed = {u"embedded/format/item_value.h"_s,
                                       u"embedded/format/timedate.h"_s,
                                       u"embedded/format/lmbcs.h"_s,
                                       u"notes/"_s,
                                       u"embedded/formula/"_s,
                                       u"unicode/"_s};  // character sets
  QDirIterator files(QStringLiteral(LENS_SOURCE_DIR "/src/embedded/formula"), {u"*.cpp"_s, u"*.h"_s},
                     QDir::Files, QDirIterator::Subdirectories);
  int seen = 0;
  while (files.hasNext()) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    for (const QRegularExpressionMatch& match : line.globalMatch(text)) {
      const QString included = match.captured(1);
      ++seen;
      EXPECT_FALSE(included.contains(u"sqlite"_s)) << file.fileName().toStdString();
      if (!included.contains(u'/')) continue;
      EXPECT_TRUE(std::any_of(kAllowed.begin(), kAllowed.end(),
                              [&](const QString& allowed) { return included.startsWith(allowed); }))
          << file.fileName().toStdString() << " includes " << included.toStdString();
    }
  }
  EXPECT_GT(seen, 100);
}

}  // namespace
