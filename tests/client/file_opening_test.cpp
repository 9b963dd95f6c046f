// Files dropped on the window.
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include "client/client_fixture.h"

namespace lens {

class ClientFiles : public Client {
 protected:
  // Lets go of files over a part of the window; false where nobody takes them.
  bool drop(const QStringList& files, QWidget& where) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) urls += QUrl::fromLocalFile(file);
    data.setUrls(urls);
    return drop(data, where);
  }
  // As the desktop does: whoever stands highest and takes it gets it.
  bool drop(QMimeData& data, QWidget& where) {
    for (QWidget* taker = &where; taker; taker = taker->parentWidget()) {
      if (!taker->acceptDrops()) continue;
      QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
      enter.ignore();
      QCoreApplication::sendEvent(taker, &enter);
      if (!enter.isAccepted()) continue;
      QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
      event.ignore();
      QCoreApplication::sendEvent(taker, &event);
      return event.isAccepted();
    }
    return false;
  }
  QString title() { return window->windowTitle(); }
};

TEST_F(ClientFiles, ADatabaseThatIsDroppedIsOpened) {
  workspace->createDatabase({}, u"other.nsf"_s, {});
  start();
  for (const char* part : {"databaseTree", "emptyPage"}) {
    window->closeDatabase();
    ASSERT_TRUE(drop({directory.path() + u"/workspace/data/other.nsf"_s}, this->part<QWidget>(part))) << part;
    ASSERT_TRUE(QTest::qWaitFor([&] { return title().contains(u"other"); })) << title().toStdString();
  }
  EXPECT_EQ(error(), QString());
}

TEST_F(ClientFiles, OfSeveralDatabasesTheLastOneIsOnTop) {
  workspace->createDatabase({}, u"other.nsf"_s, {});
  start();
  window->openFiles(
      {directory.path() + u"/workspace/data/other.nsf"_s, directory.path() + u"/workspace/data/mail.nsf"_s});
  EXPECT_TRUE(title().contains(u"Karin's mail"_s)) << title().toStdString();
}

TEST_F(ClientFiles, DxlThatIsDroppedIsImported) {
  start();
  openMail();
  ASSERT_TRUE(drop({dxlFile(u"a.dxl"_s, 2), dxlFile(u"b.dxl"_s, 3)}, table()));
  // Both files bring the same UNIDs for the first two.
  EXPECT_TRUE(QTest::qWaitFor([&] { return mail->notes().noteCount(noteclass::Document) == 3; }))
      << mail->notes().noteCount(noteclass::Document);
}

TEST_F(ClientFiles, WhatIsNoDatabaseAndWhatIsMissingIsTold) {
  start();
  const QString junk = directory.path() + u"/junk.nsf"_s;
  QFile file(junk);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database");
  file.close();
  window->openFiles({junk});
  EXPECT_TRUE(error().contains(u"junk.nsf"_s)) << error().toStdString();
  window->openFiles({directory.path() + u"/gone.dxl"_s});
  EXPECT_TRUE(error().contains(u"gone.dxl"_s)) << error().toStdString();
}

TEST_F(ClientFiles, TextAndWebAddressesAreNotTaken) {
  start();
  QMimeData text;
  text.setText(u"mail.nsf"_s);
  EXPECT_FALSE(drop(text, part<QWidget>("emptyPage")));
  QMimeData web;
  web.setUrls({QUrl(u"https://example.org/a.dxl"_s)});
  EXPECT_FALSE(drop(web, part<QWidget>("emptyPage")));
}

}  // namespace lens
