#include "embedded/format/engine_fault.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(EngineFaults, HaveNumbersOfTheirOwn) {
  QMap<int, QString> meanings;
  for (const EngineFault& fault : engineFaults()) {
    EXPECT_FALSE(meanings.contains(fault.number)) << fault.number;
    EXPECT_FALSE(meanings.values().contains(QString(fault.meaning))) << fault.number;
    EXPECT_TRUE(fault.number >= kFirstEngineFault && fault.number <= kLastEngineFault) << fault.number;
    EXPECT_EQ(standardErrorText(fault.number), standardErrorText(kLastEngineFault + 1)) << "a usual number";
    meanings.insert(fault.number, fault.meaning);
  }
  EXPECT_EQ(meanings.firstKey(), kFirstEngineFault);
  EXPECT_EQ(meanings.lastKey(), kLastEngineFault);
}

// Nobody keeps a number of the range for himself.
TEST(EngineFaults, StandInOneHeaderAndOneTable) {
  static const QRegularExpression definition(u"\\bconstexpr int (?:\\w+ = \\d+, )*\\w+ = (4[01]\\d\\d)\\b"_s);
  const QString engine = QStringLiteral(LENS_SAMPLES_DIR) + u"/../src/embedded"_s;
  QSet<int> listed, defined;
  for (const EngineFault& fault : engineFaults()) listed.insert(fault.number);
  QDirIterator files(engine, {u"*.h"_s, u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
  int read = 0;
  while (files.hasNext()) {
    QFile file(files.next());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ++read;
    const QString text = QString::fromUtf8(file.readAll());
    for (auto match = definition.globalMatch(text); match.hasNext();) {
      const int number = match.next().captured(1).toInt();
      constexpr int kRoundSize = 4096;  // of something in bytes
      if (number < kFirstEngineFault || number > kLastEngineFault || number == kRoundSize) continue;
      EXPECT_TRUE(file.fileName().endsWith(u"/format/engine_fault.h"_s)) << file.fileName().toStdString();
      defined.insert(number);
    }
  }
  EXPECT_GT(read, 100);
  EXPECT_EQ(defined, listed);
}

}  // namespace
}  // namespace lens
