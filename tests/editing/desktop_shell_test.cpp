#include "host/desktop_shell.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QTemporaryDir>

#include "support/printers.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(DesktopShell, TellsAMissingFileFromAMissingDirectory) {
  const QTemporaryDir directory;
  EXPECT_EQ(openWithDesktop(directory.filePath(u"none.txt"_s)), 2);
  EXPECT_EQ(openWithDesktop(directory.filePath(u"none/none.txt"_s)), 3);
}

#ifdef Q_OS_LINUX
TEST(DesktopShell, AsksTheDesktopForAProgramAndSaysWhenThereIsNone) {
  const QTemporaryDir directory;
  const auto put = [&](const QString& name, const QByteArray& text) {
    QFile file(directory.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  };
  put(u"xdg-mime"_s, "#!/bin/sh\necho \"$@\" > \"$0.asked\"\n");
  put(u"plan.txt"_s, "text");
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", directory.path().toLocal8Bit() + ":" + path);
  EXPECT_EQ(openWithDesktop(directory.filePath(u"plan.txt"_s)), 31);
  qputenv("PATH", path);
  QFile asked(directory.filePath(u"xdg-mime.asked"_s));
  ASSERT_TRUE(asked.open(QIODevice::ReadOnly));
  EXPECT_EQ(asked.readAll().trimmed(), "query default text/plain");
}
#endif

TEST(DesktopShell, ShowsWhatTheSystemKnowsOfAFileAndBlocksNothing) {
  const QTemporaryDir directory;
  QFile file(directory.filePath(u"<b>plan.txt"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QByteArray(1234, 'x'));
  file.close();
  QWidget owner;
  showFileProperties(&owner, file.fileName());
  auto* window = owner.findChild<QDialog*>(u"FileProperties"_s);
  ASSERT_TRUE(window);
  EXPECT_TRUE(window->isVisible());
  EXPECT_FALSE(window->isModal());
  QStringList shown;
  for (const QLabel* label : window->findChildren<QLabel*>()) shown += label->text();
  // A name is no markup.
  EXPECT_TRUE(shown.contains(file.fileName())) << shown.join(u'|').toStdString();
  EXPECT_TRUE(shown.join(u'|').remove(u',').remove(u'.').contains(u"1234 bytes"_s))
      << shown.join(u'|').toStdString();
  window->close();
}

}  // namespace
}  // namespace lens
