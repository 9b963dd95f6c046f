// The directories that the desktop gives to the program.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "host/desktop_host.h"
#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// Sets an entry of the environment for one test.
class WithEntry {
 public:
  WithEntry(const char* name, const QString& value)
      : name_(name), wasSet_(qEnvironmentVariableIsSet(name)), before_(qgetenv(name)) {
    qputenv(name, QFile::encodeName(value));
  }
  ~WithEntry() {
    if (wasSet_)
      qputenv(name_, before_);
    else
      qunsetenv(name_);
  }
  Q_DISABLE_COPY(WithEntry)

 private:
  const char* name_;
  bool wasSet_;
  QByteArray before_;
};

#ifdef Q_OS_LINUX
TEST(HostDirectories, TheUsersIsMadeWhenItIsMissing) {
  const QTemporaryDir directory;
  DesktopHost host;
  const WithEntry data("XDG_DATA_HOME", directory.filePath(u"share"_s));
  const QString user = host.userDirectory();
  EXPECT_TRUE(user.startsWith(directory.filePath(u"share/"_s))) << user.toStdString();
  EXPECT_TRUE(QDir(user).exists());
  EXPECT_EQ(host.userDirectory(), user);
}

TEST(HostDirectories, ThereIsNoneOfTheUserWhereItCannotBeMade) {
  const QTemporaryDir directory;
  QFile file(directory.filePath(u"share"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  DesktopHost host;
  const WithEntry data("XDG_DATA_HOME", file.fileName());
  EXPECT_EQ(host.userDirectory(), QString());
}

TEST(HostDirectories, TheTemporaryOneIsNamedByTheEnvironmentOrTheSystem) {
  DesktopHost host;
  {
    const WithEntry temp("TEMP", u"/some/where"_s);
    EXPECT_EQ(host.tempDirectory(), u"/some/where"_s);
  }
  const WithEntry none("TEMP", QString());
  EXPECT_EQ(host.tempDirectory(), QDir::tempPath());
}
#endif

}  // namespace
}  // namespace lens
