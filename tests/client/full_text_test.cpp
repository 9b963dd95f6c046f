#include <QMenu>

#include "client/client_fixture.h"
#include "embedded/search/full_text.h"

namespace lens {

TEST_F(Client, CreatesAFullTextIndexAndThenUpdatesIt) {
  const quint32 first = save(memo(u"pump house"_s));
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
  const quint32 second = save(memo(u"another pump"_s));
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
