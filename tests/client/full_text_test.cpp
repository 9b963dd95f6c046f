#include <QMenu>
#include <QTimer>

#include "client/client_fixture.h"
#include "embedded/search/full_text.h"

namespace lens {

TEST_F(Client, CreatesAFullTextIndexAndThenUpdatesIt) {
  const NoteId first = save(memo(u"pump house"_s));
  start();
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled()) << "no database is open";
  openMail();
  EXPECT_TRUE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_FALSE(part<QAction>("updateIndexAction").isEnabled());
  trigger("createIndexAction");
  EXPECT_TRUE(hasFullTextIndex(*mail));
  EXPECT_TRUE(report().contains(u"index"_s)) << report().toStdString();
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_TRUE(part<QAction>("updateIndexAction").isEnabled());
  const NoteId second = save(memo(u"another pump"_s));
  trigger("updateIndexAction");
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(fullTextSearch(*mail, u"pump", 0).size(), 2);
  EXPECT_NE(first, second);
}

TEST_F(Client, OffersWhatFitsTheIndexThatIsThereNow) {
  start();
  openMail();
  createFullTextIndex(*mail);
  auto& menu = part<QMenu>("fileMenu");
  Q_EMIT menu.aboutToShow();
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_TRUE(part<QAction>("updateIndexAction").isEnabled());
  dropFullTextIndex(*mail);
  Q_EMIT menu.aboutToShow();
  EXPECT_TRUE(part<QAction>("createIndexAction").isEnabled());
  window->closeDatabase();
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_FALSE(part<QAction>("updateIndexAction").isEnabled());
}

// Enough for several transactions of an index.
void fillMail(Database& mail) {
  Database::Transaction transaction(mail);
  for (int i = 0; i < 2500; ++i) {
    Note note;
    note.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"));
    note.add(u"Subject"_s, itemflag::Summary, textValue(u"pump %1"_s.arg(i)));
    note.add(u"Body"_s, 0,
             textValue(u"A longer text of letter %1, with words and more words. "_s.arg(i).repeated(20)));
    mail.notes().save(note);
  }
  transaction.commit();
}

TEST_F(Client, TheWindowLivesOnWhileAnIndexIsMade) {
  fillMail(*mail);
  start();
  openMail();
  bool barSeen = false;
  QString refused;
  QTimer meanwhile;
  meanwhile.setSingleShot(true);
  QObject::connect(&meanwhile, &QTimer::timeout, window.get(), [&] {
    save(memo(u"pump, saved meanwhile"_s));
    barSeen = part<QWidget>("importBar").isVisible();
    trigger("importFilesAction");
    refused = error();
  });
  meanwhile.start(5);
  trigger("createIndexAction");
  EXPECT_TRUE(barSeen);
  EXPECT_TRUE(refused.contains(u"An index is being made"_s)) << refused.toStdString();
  EXPECT_EQ(choice->asked, 0);
  EXPECT_FALSE(part<QWidget>("importBar").isVisible());
  EXPECT_EQ(fullTextSearch(*mail, u"pump", 0).size(), 2501);
  EXPECT_TRUE(report().contains(u"all documents"_s)) << report().toStdString();
}

TEST_F(Client, ACancelledIndexGoesOnTheNextTime) {
  fillMail(*mail);
  start();
  openMail();
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  trigger("createIndexAction");
  EXPECT_FALSE(hasFullTextIndex(*mail));
  EXPECT_TRUE(report().contains(u"Cancelled"_s)) << report().toStdString();
  EXPECT_TRUE(part<QAction>("createIndexAction").isEnabled());
  trigger("createIndexAction");
  EXPECT_EQ(fullTextSearch(*mail, u"pump", 0).size(), 2500);
  EXPECT_TRUE(part<QAction>("updateIndexAction").isEnabled());
}

TEST_F(Client, AWindowDestroyedWhileAnIndexIsMadeEndsIt) {
  fillMail(*mail);
  start();
  openMail();
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  trigger("createIndexAction");
  EXPECT_EQ(window, nullptr);
  EXPECT_FALSE(hasFullTextIndex(*mail));
}

TEST_F(Client, TellsWhyADatabaseCannotBeIndexed) {
  mail.reset();
  const QString file = workspace->dataDirectory() + u"/mail.nsf"_s;
  ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
  start();
  openMail();
  trigger("createIndexAction");
  EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
  EXPECT_EQ(report(), QString());
}

}  // namespace lens
