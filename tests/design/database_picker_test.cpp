// The database picker: the client opens what was chosen, and its profiles are listed.
#include "design/database_picker.h"

#include <QTest>
#include <QTimer>

#include "design/tools_fixture.h"

namespace lens {
namespace {

const QString kPickedHub = u"CN=Hub/O=Acme"_s;

class DatabasePickerTest : public ToolsTest {
 protected:
  DatabasePickerTest() {
    workspace->addServer(kPickedHub);
    workspace->createDatabase(kPickedHub, u"apps/hub.nsf"_s, {}, true);
    other = openDatabase(u"other.nsf"_s);
    profile(u"Settings"_s);
    workspace->client().showDatabase({{}, u"mail.nsf"_s});
  }
  void profile(const QString& name) {
    Note note = document(name);
    const QString key = u"$profile_%1"_s.arg(name.size(), 3, 10, QChar(u'0')) + name.toLower() + u'_';
    note.add(u"$Name"_s, itemflag::Summary, textValue(key));
    save(note);
  }
  Form3& window() { return app->databasePicker().window; }
  void open(const std::function<void()>& inside) {
    QTimer::singleShot(0, &window(), [&] {
      inside();
      window().hide();
    });
    press("cmdDbPicker");
  }
  void pick(const QString& path) {
    window().lstDBNamesDest->setListIndex(window().lstDBNamesDest->find(path));
    window().lstDBNamesDest->dblClick.fire();
  }
  QString shownInClient() {
    const NotesDatabase shown = NotesUIWorkspace::of(*notesDoor).currentDatabase();
    return shown.isNothing() ? QString() : databaseObject().get(u"FILEPATH"_s).text();
  }
  std::shared_ptr<Database> other;
};

TEST_F(DatabasePickerTest, LoadsServersAndDatabases) {
  startOnDatabase();
  open([&] {
    EXPECT_TRUE(window().isModal());
    EXPECT_EQ(window().lstDesignServer->text(), u"Local"_s);
    EXPECT_GE(window().lstDBNamesDest->find(u"other.nsf"_s), 0);
  });
}

TEST_F(DatabasePickerTest, AChosenDatabaseIsOpenedInTheClientAndItsProfilesAreListed) {
  startOnDatabase();
  open([&] {
    pick(u"other.nsf"_s);
    EXPECT_FALSE(window().isVisible());
  });
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(shownInClient(), u"other.nsf"_s);
  EXPECT_EQ(state().gDb.filePath(), u"other.nsf"_s);
  EXPECT_EQ(app->databasePicker().gPickedServer, QString());
  EXPECT_EQ(app->databasePicker().gPickedDatabase, u"other.nsf"_s);
  ASSERT_EQ(rows("idList").size(), 1);
  EXPECT_TRUE(rows("idList")[0].contains(u"settings"_s)) << rows("idList")[0].toStdString();
}

TEST_F(DatabasePickerTest, TheServerIsListedByItsButtonAndByADoubleClick) {
  startOnDatabase();
  open([&] {
    window().lstDesignServer->setText(kPickedHub);
    window().cmdExpand2->click.fire();
    EXPECT_EQ(window().lstDBNamesDest->listCount(), 1);
    window().lstDesignServer->setText(u"Local"_s);
    QTest::mouseDClick(window().lstDesignServer->lineEdit(), Qt::LeftButton);
    EXPECT_GE(window().lstDBNamesDest->find(u"other.nsf"_s), 0);
    window().lstDesignServer->setText(kPickedHub);
    window().cmdExpand2->click.fire();
    pick(u"apps"_s);
  });
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(app->databasePicker().gPickedServer, kPickedHub);
  EXPECT_EQ(state().gDb.server(), kPickedHub);
}

TEST_F(DatabasePickerTest, WithoutAChoiceTheProfilesOfTheClientsDatabaseAreListed) {
  database = other;
  workspace->client().showDatabase({{}, u"other.nsf"_s});
  startOnDatabase();
  open([&] { window().close(); });
  EXPECT_EQ(rows("idList").size(), 1);
  EXPECT_EQ(shownInClient(), u"other.nsf"_s);
}

TEST_F(DatabasePickerTest, NoRowIsAFailureOfItsOwnReport) {
  startOnDatabase();
  open([&] {
    window().lstDBNamesDest->dblClick.fire();
    EXPECT_FALSE(window().isVisible());
  });
  ASSERT_GE(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "Open DB Error!");
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_FALSE(host.boxes[0].text.isEmpty());
  EXPECT_GE(notes().log.count(u"CURRENTDATABASE"_s), 3) << "the profiles were looked for";
}

TEST_F(DatabasePickerTest, ADatabaseThatHasGoneIsAFailureOfItsOwnReport) {
  startOnDatabase();
  open([&] {
    window().lstDBNamesDest->addItem(u"gone.nsf"_s);
    pick(u"gone.nsf"_s);
    EXPECT_FALSE(window().isVisible());
  });
  ASSERT_GE(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "Open DB Error!");
  EXPECT_EQ(app->databasePicker().gPickedDatabase, u"gone.nsf"_s);
}

TEST_F(DatabasePickerTest, TheClientClosesWhatItShowsBeforeItOpensWhatWasChosen) {
  startOnDatabase();
  open([&] {
    notes().log.clear();
    pick(u"other.nsf"_s);
    QStringList steps;
    for (const QString& step : std::as_const(notes().log))
      if (!step.startsWith(u"Notes."_s)) steps += step;
    EXPECT_EQ(steps, QStringList({u"CURRENTDATABASE"_s, u"Close"_s, u"CURRENTDATABASE"_s, u"Close"_s,
                                  u"GETDATABASE"_s, u"OPENDATABASE"_s}));
  });
}

TEST_F(DatabasePickerTest, ListingShowsTheHourglassMeanwhile) {
  startOnDatabase();
  open([&] {
    host.pointers.clear();
    window().cmdExpand2->click.fire();
    EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  });
}

TEST_F(DatabasePickerTest, EveryFailingCallHidesTheWindowAndListsProfiles) {
  startOnDatabase();
  open([] {});
  const auto run = [&](int n) {
    bool reached = false;
    open([&] {
      reached = reachesFault(notes(), n, [&] { pick(u"other.nsf"_s); });
      EXPECT_FALSE(window().isVisible());
    });
    return reached;
  };
  const int failures = withEveryFault(run, [&](int) {
    ASSERT_FALSE(host.boxes.isEmpty());
    EXPECT_EQ(host.boxes[0].title, "Open DB Error!");
    host.boxes.clear();
  });
  EXPECT_GT(failures, 4);
}

}  // namespace
}  // namespace lens
