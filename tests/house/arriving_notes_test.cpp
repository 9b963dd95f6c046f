// Notes of a large import are seen by nobody before its end: no statement may forget that.
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace lens {
namespace {

using namespace Qt::StringLiterals;

// What must see all rows: what removes the notes again, what collects objects that nobody refers to, what
// brings a file of an earlier schema up to date, and the highest note ID.
const QSet<QString> kSeeAll = {
    u"DELETE FROM note WHERE id IN (SELECT id FROM note WHERE id BETWEEN ? AND ? LIMIT 200)"_s,
    u"SELECT items FROM note WHERE state = 0"_s,
    u"DELETE FROM note WHERE id = ?"_s,
};
const QSet<QString> kFilesThatSeeAll = {u"database_file.cpp"_s};

TEST(Statements, ThatReadNotesPassOverThoseThatAreArriving) {
  static const QRegularExpression literals(u"(?:\"(?:[^\"\\\\]|\\\\.)*\"|LENS_\\w+|\\s)+"_s);
  static const QRegularExpression reads(u"\\b(?:FROM|JOIN) note\\b"_s);
  int seen = 0;
  QDirIterator files(QStringLiteral(LENS_SOURCE_DIR "/src/embedded"), {u"*.cpp"_s, u"*.h"_s}, QDir::Files,
                     QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    if (kFilesThatSeeAll.contains(files.fileName())) continue;
    auto all = literals.globalMatch(QString::fromUtf8(file.readAll()));
    while (all.hasNext()) {
      const QString statement = all.next().captured();
      if (!statement.contains(reads)) continue;
      ++seen;
      const bool passesOver = statement.contains(u"ARRIV"_s) || statement.contains(u"max(id) FROM note"_s);
      EXPECT_TRUE(passesOver || kSeeAll.contains(statement.trimmed().remove(u'"')))
          << files.fileName().toStdString() << ": " << statement.toStdString();
    }
  }
  EXPECT_GT(seen, 20);
}

}  // namespace
}  // namespace lens
