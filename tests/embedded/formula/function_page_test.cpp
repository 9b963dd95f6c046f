// The page on formulas is what the table of functions says.
//
// To renew it after a change: LENS_RENEW_PAGES=1 test_embedded_formula --gtest_filter='FunctionPage.*'

#include "embedded/formula/function_page.h"

#include <gtest/gtest.h>

#include <QFile>

#include "embedded/formula/function.h"

namespace lens::formula {
namespace {

const QString kPage = QStringLiteral(LENS_SAMPLES_DIR "/../docs/formula.md");

TEST(FunctionPage, IsTheOneThatIsCommitted) {
  const QByteArray made = functionPage().toUtf8();
  QFile file(kPage);
  if (qEnvironmentVariableIsSet("LENS_RENEW_PAGES")) {
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(made), made.size());
    return;
  }
  ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << kPage.toStdString();
  EXPECT_TRUE(file.readAll() == made)
      << "docs/formula.md is out of date. Renew it: LENS_RENEW_PAGES=1 test_embedded_formula "
         "--gtest_filter='FunctionPage.*'";
}

TEST(FunctionPage, HasARowForEachFunction) {
  const QString page = functionPage();
  for (const Function* function : allFunctions())
    EXPECT_TRUE(page.contains(QStringLiteral("\n| `") + QString::fromUtf8(function->name) +
                              (*function->arguments ? u'(' : u'`')))
        << function->name;
}

// A bar inside a cell would begin another one.
TEST(FunctionPage, RowsHaveFourCells) {
  int rows = 0;
  for (const QString& line : functionPage().split(u'\n')) {
    if (!line.startsWith(QStringLiteral("| `@"))) continue;
    ++rows;
    EXPECT_EQ(QString(line).remove(QStringLiteral("\\|")).count(u'|'), 5) << line.toStdString();
  }
  EXPECT_EQ(rows, int(allFunctions().size()));
}

}  // namespace
}  // namespace lens::formula
