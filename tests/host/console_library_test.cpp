#include "host/console_library.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "notes/code_page.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class ConsoleLibrary : public ::testing::Test {
 protected:
  void place(const QString& file) { ASSERT_TRUE(QFile::copy(file, directory_.filePath(u"cmdRemCon.so"_s))); }
  int failure() {
    try {
      consoleLibraryIn(directory_.path());
      return 0;
    } catch (const RuntimeError& error) {
      return error.number();
    }
  }
  QTemporaryDir directory_;
};

TEST_F(ConsoleLibrary, IsNoneWhereNoFileLies) {
  EXPECT_FALSE(consoleLibraryIn(directory_.path()));
}

TEST_F(ConsoleLibrary, BesideTheProgramIsCalled) {
  place(QStringLiteral(LENS_CONSOLE_DOUBLE));
  const RemoteCommand send = consoleLibraryIn(directory_.path());
  ASSERT_TRUE(send);
  QByteArray reply(32767, ' ');
  EXPECT_EQ(send("Hub/Acme", "show tasks", reply), 20);
  EXPECT_EQ(upToNul(reply), "Hub/Acme: show tasks");
}

TEST_F(ConsoleLibrary, WithoutTheFunctionRaises) {
  place(QStringLiteral(LENS_OTHER_LIBRARY));
  EXPECT_EQ(failure(), err::EntryNotFound);
}

TEST_F(ConsoleLibrary, ThatIsNoneRaises) {
  QFile file(directory_.filePath(u"cmdRemCon.so"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no library") > 0);
  file.close();
  EXPECT_EQ(failure(), err::LibraryNotLoaded);
}

}  // namespace
}  // namespace lens
