// The help menu: what is shipped to read, and About.
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBrowser>

#include "client/client_fixture.h"
#include "host/shipped_files.h"
#include "notes/version.h"

namespace lens {

class ClientHelp : public Client {
 protected:
  QTextBrowser& page() { return part<QTextBrowser>("guidePage"); }
  QString text() { return page().document()->toPlainText(); }
};

TEST_F(ClientHelp, F1ShowsTheGuideWithItsPictures) {
  start();
  EXPECT_EQ(part<QAction>("guideAction").shortcut(), QKeySequence(Qt::Key_F1));
  trigger("guideAction");
  ASSERT_TRUE(part<QWidget>("guideWindow").isVisible());
  EXPECT_TRUE(text().startsWith(u"What the main window does"_s)) << text().left(80).toStdString();
  EXPECT_TRUE(text().contains(QChar(QChar::ObjectReplacementCharacter))) << "no picture";
}

TEST_F(ClientHelp, EveryPageOfTheMenuIsThere) {
  start();
  int pages = 0;
  for (QAction* action : part<QMenu>("helpMenu").actions()) {
    if (action->isSeparator() || action->objectName() == u"aboutAction") continue;
    action->trigger();
    EXPECT_FALSE(text().contains(u"is not shipped"_s)) << action->objectName().toStdString();
    EXPECT_GT(text().size(), 500) << action->objectName().toStdString();
    EXPECT_GT(page().verticalScrollBar()->maximum(), 0)
        << "it is laid out: " << action->objectName().toStdString();
    ++pages;
  }
  EXPECT_GE(pages, 5);
}

TEST_F(ClientHelp, PagesLeadToEachOtherAndBack) {
  start();
  trigger("tourAction");
  page().setSource(QUrl(u"docs/command.md"_s));
  EXPECT_TRUE(text().contains(u"databases"_s));
  page().setSource(QUrl(u"command.schema.json"_s));
  EXPECT_TRUE(text().contains(u"\"$schema\""_s)) << text().left(200).toStdString();
  page().backward();
  page().backward();
  EXPECT_TRUE(text().contains(u"Tessaly Lens"_s));
  page().setSource(QUrl(u"docs/none.md"_s));
  EXPECT_TRUE(text().contains(u"none.md is not shipped"_s)) << text().toStdString();
}

// What a page shows or leads to has to be there, or the reader is led into nothing.
TEST_F(ClientHelp, EveryPictureAndEveryLinkOfThePagesIsShipped) {
  static const QRegularExpression link(u"\\]\\((?![a-z]+:|#)([^)#\\s]+)"_s);
  QStringList pages{u"README.md"_s, u"CHANGELOG.md"_s};
  int links = 0;
  for (qsizetype i = 0; i < pages.size(); ++i) {
    QFile page(shippedFile(pages[i]));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly)) << pages[i].toStdString();
    for (const QRegularExpressionMatch& match : link.globalMatch(QString::fromUtf8(page.readAll()))) {
      const QString to = QDir::cleanPath(QFileInfo(pages[i]).path() + u'/' + match.captured(1));
      EXPECT_FALSE(shippedFile(to).isEmpty()) << pages[i].toStdString() << " leads to " << to.toStdString();
      if (to.endsWith(u".md") && !pages.contains(to)) pages += to;
      ++links;
    }
  }
  EXPECT_TRUE(pages.contains(u"docs/guide.md"_s));
  EXPECT_GT(links, 30);
}

TEST_F(ClientHelp, WordsAreFoundOnThePageAgainAndAgain) {
  start();
  trigger("guideAction");
  auto& words = part<QLineEdit>("guideWords");
  ASSERT_TRUE(QTest::qWaitForWindowActive(words.window()));
  ASSERT_TRUE(QTest::qWaitFor([&] {
    words.setFocus();
    return words.hasFocus();
  }));
  words.setText(u"rich text"_s);
  EXPECT_TRUE(text().contains(u"rich text"_s));
  int first = -1, hits = 0;
  for (int i = 0; i < 50; ++i) {
    QTest::keyClick(&words, Qt::Key_Return);
    const QTextCursor cursor = page().textCursor();
    EXPECT_EQ(cursor.selectedText().toLower(), u"rich text"_s);
    if (first == cursor.selectionStart()) break;
    if (first < 0) first = cursor.selectionStart();
    ++hits;
  }
  EXPECT_GT(hits, 1);
  EXPECT_LT(hits, 50);
}

TEST_F(ClientHelp, AboutTellsVersionBuildLibrariesAndLicences) {
  start();
  trigger("aboutAction");
  const QString facts = part<QPlainTextEdit>("aboutFacts").toPlainText();
  for (const QString& fact :
       QStringList{u"Tessaly Lens "_s + programVersion(), u"Build: "_s, u"Qt 6"_s, u"SQLite 3"_s, u"ICU "_s})
    EXPECT_TRUE(facts.contains(fact)) << fact.toStdString() << " lacks in " << facts.toStdString();
  part<QPushButton>("aboutCopy").click();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), facts);
  part<QPushButton>("aboutLicence").click();
  EXPECT_TRUE(text().contains(u"Permission is hereby granted"_s)) << text().left(200).toStdString();
  part<QPushButton>("aboutLibraries").click();
  EXPECT_TRUE(text().contains(u"LGPL"_s));
  trigger("aboutAction");
  EXPECT_EQ(window->findChildren<QWidget*>(u"aboutDialog"_s).size(), 1) << "it is shown once";
}

}  // namespace lens
