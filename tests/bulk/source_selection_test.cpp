#include "bulk/source_selection.h"

#include <QLineEdit>
#include <QListView>

#include "bulk/shown_replic.h"
#include "embedded/format/source_formula.h"
#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"
#include "support/every_fault.h"

namespace lens {
namespace {

class SelectionTest : public ShownReplic {
 protected:
  SourceSelection& selection() { return app->bulk().selection; }
  static void pressEnter(ComboBox* box) {
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Return);
  }
  // Databases on this machine: three databases, and a template.
  void makeLocal() {
    make(u"apps/Orders.nsf"_s, {}, u"StdOrders"_s);
    make(u"apps/Crm.nsf"_s, {}, u"StdCrm"_s);
    make(u"orders.ntf"_s);
  }
  const QString orders = native(u"apps/Orders.nsf"_s), crm = native(u"apps/Crm.nsf"_s);
};

// --- databases ---

TEST_F(SelectionTest, AClickListsDatabasesOnlyAndEnterListsTemplatesToo) {
  makeLocal();
  addServers();
  openTool();
  window().lstServer->setText(u"Local"_s);
  window().txtMaskSorce->setText(u"no such path"_s);
  window().lstServer->click.fire();
  EXPECT_EQ(sources(), QStringList({crm, orders, u"mail.nsf"_s})) << "no masks";
  EXPECT_EQ(window().lblDB->text(), "Databases on: ") << "with its blank";
  EXPECT_EQ(state().gServer, "");
  window().txtMaskSorce->setText({});
  pressEnter(window().lstServer);
  EXPECT_EQ(sources(), QStringList({crm, orders, u"mail.nsf"_s, u"orders.ntf"_s}));
  EXPECT_EQ(window().lblDB->text(), "Databases on: Local");
  window().lstServer->setText(kHub);
  window().lstServer->click.fire();
  EXPECT_EQ(sources(), QStringList(u"names.nsf"_s));
  EXPECT_EQ(window().lblDB->text(), u"Databases on: "_s + kHub);
  EXPECT_EQ(state().gServer, kHub);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(SelectionTest, AServerPickedWithTheMouseIsListedAtOnceButATargetServerIsNot) {
  makeLocal();
  addServers();
  openTool();
  const auto pickFirst = [](ComboBox& box) {
    QApplication::setDoubleClickInterval(0);
    box.showPopup();
    const QRect place = box.view()->visualRect(box.model()->index(0, 0));
    QTest::mouseMove(box.view()->viewport(), place.center());
    QTest::mouseClick(box.view()->viewport(), Qt::LeftButton, {}, place.center());
  };
  pickFirst(*window().lstServer);
  EXPECT_EQ(window().lstServer->text(), "Local");
  EXPECT_EQ(sources().size(), 3);
  pickFirst(*window().lstDesignServer);
  EXPECT_EQ(window().lstDesignServer->text(), "Local");
  EXPECT_EQ(targets(), QStringList());
  EXPECT_EQ(window().lblDB2->text(), "Select target DB");
}

TEST_F(SelectionTest, AnArrowKeyPicksAServer) {
  makeLocal();
  addServers();
  openTool();
  window().lstServer->setText(u"Local"_s);
  window().lstServer->setFocus();
  QTest::keyClick(window().lstServer, Qt::Key_Down);
  QTest::keyClick(window().lstServer, Qt::Key_Down);
  EXPECT_EQ(window().lstServer->text(), kHub);
  EXPECT_EQ(sources(), QStringList(u"names.nsf"_s));
}

TEST_F(SelectionTest, TabThroughTheServerBoxesListsNothing) {
  makeLocal();
  addServers();
  openTool();
  window().lstDBNames->clear();
  window().lstDBNames->addItem(u"saved.nsf"_s);
  for (ComboBox* box : {window().lstServer, window().lstDesignServer}) {
    for (const QString& text : {u"Local"_s, kHub, kMail}) {
      box->setText(text);
      box->setFocus();
      QTest::keyClick(box, Qt::Key_Tab);
      EXPECT_NE(window().focusWidget(), box);
    }
  }
  EXPECT_EQ(sources(), QStringList(u"saved.nsf"_s));
  EXPECT_EQ(targets(), QStringList());
}

TEST_F(SelectionTest, EnterListsOnce) {
  makeLocal();
  addServers();
  openTool();
  window().lstServer->setText(u"Local"_s);
  notes().log.clear();
  pressEnter(window().lstServer);
  EXPECT_EQ(notes().log.count(u"GETDBDIRECTORY"_s), 1);
  notes().log.clear();
  QTest::keyClicks(window().lstServer, u"x"_s);
  QTest::keyClick(window().lstServer, Qt::Key_Escape);
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(SelectionTest, TheMaskForgivesCapitalsAndTheTemplateNameIsWhole) {
  makeLocal();
  openTool();
  window().txtMaskSorce->setText(u"ORDERS"_s);
  window().txtFind->setText(u"x"_s);
  window().txtReplace->setText(u"y"_s);
  QTest::mouseClick(window().cmdExpand, Qt::LeftButton);
  EXPECT_EQ(sources(), QStringList({orders, u"orders.ntf"_s}));
  EXPECT_EQ(window().txtFind->text() + window().txtReplace->text(), "");
  EXPECT_EQ(window().lblDB->text(), "Databases on: Local");
  const auto listed = [this](const QString& templateName) {
    window().txtTemplale->setText(templateName);
    QTest::mouseClick(window().cmdExpand, Qt::LeftButton);
    return sources();
  };
  EXPECT_EQ(listed(u"stdORDERS"_s), QStringList(orders));
  EXPECT_EQ(listed(u"StdOrder"_s), QStringList()) << "a part matches nothing";
  EXPECT_EQ(listed(u"StdCrm"_s), QStringList()) << "mask and template both hold";
  window().txtMaskSorce->setText({});
  EXPECT_EQ(listed(u"StdCrm"_s), QStringList(crm));
}

TEST_F(SelectionTest, TheTargetListHasItsOwnMaskAndNoTemplateFilter) {
  makeLocal();
  openTool();
  window().txtTemplale->setText(u"StdCrm"_s);
  window().txtMaskSorce->setText(u"none"_s);
  window().txtFind->setText(u"x"_s);
  window().txtReplace->setText(u"y"_s);
  QTest::mouseClick(window().cmdExpand2, Qt::LeftButton);
  EXPECT_EQ(targets(), QStringList({crm, orders, u"mail.nsf"_s, u"orders.ntf"_s}));
  EXPECT_EQ(window().lblDB2->text(), "Databases on: Local");
  EXPECT_EQ(window().txtFind->text() + window().txtReplace->text(), "xy") << "these stay";
  window().txtMaskDest->setText(u"CRM"_s);
  pressEnter(window().lstDesignServer);
  EXPECT_EQ(targets(), QStringList(crm));
}

TEST_F(SelectionTest, EveryListingSetsTheServerOfTheLastOne) {
  addServers();
  openTool();
  window().lstDesignServer->setText(kMail);
  pressEnter(window().lstDesignServer);
  EXPECT_EQ(state().gServer, kMail);
  window().lstServer->setText(u"Local"_s);
  QTest::mouseClick(window().cmdExpand, Qt::LeftButton);
  EXPECT_EQ(state().gServer, "");
}

TEST_F(SelectionTest, LocalInOtherLettersIsAServerThatNobodyKnows) {
  openTool();
  window().lstServer->setText(u"local"_s);
  notes().log.clear();
  pressEnter(window().lstServer);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, "Program Error in: GetDbs");
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u" in line 0"));
  EXPECT_EQ(state().gServer, "local");
  EXPECT_EQ(sources(), QStringList());
  EXPECT_EQ(host.pointerCode, pointer::Default);
  window().lstServer->click.fire();
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_EQ(host.boxes[1].title, "Program Error in: lstServer_DblClick");
  EXPECT_EQ(host.boxes[1].text, host.boxes[0].text);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(SelectionTest, DamagedFilesAmongTheOthersAreListedWithoutABox) {
  for (int i = 0; i < 8; ++i) make(u"db%1.nsf"_s.arg(i), {}, u"StdMail"_s);
  QFile junk(workspace->dataDirectory() + u"/junk.nsf"_s);
  ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
  junk.write("no database");
  junk.close();
  openTool();
  EXPECT_EQ(sources().size(), 10);
  window().txtTemplale->setText(u"StdMail"_s);
  QTest::mouseClick(window().cmdExpand, Qt::LeftButton);
  EXPECT_EQ(sources().size(), 8);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SelectionTest, WithoutASessionListsAreClearedInSilence) {
  openTool();
  state().gSession.release();
  window().lblDB->setText(u"before"_s);
  window().lstServer->setText(u"Local"_s);
  window().lstServer->click.fire();
  EXPECT_EQ(sources(), QStringList());
  EXPECT_EQ(window().lblDB->text(), "before");
  window().lstDBNames->addItem(u"x"_s);
  pressEnter(window().lstServer);
  EXPECT_EQ(sources(), QStringList());
  EXPECT_EQ(window().lblDB->text(), "Databases on: Local");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SelectionTest, AFailureInAnyPlaceOfAListingShowsOneBoxAndTheArrowComesBack) {
  makeLocal();
  openTool();
  window().txtTemplale->setText(u"StdCrm"_s);
  const QVector<std::pair<QString, std::function<void()>>> listings = {
      {u"GetDbs"_s, [this] { window().cmdExpand->click.fire(); }},
      {u"lstServer_DblClick"_s, [this] { window().lstServer->click.fire(); }}};
  for (const auto& [name, run] : listings) {
    const int runs = withEveryFault(
        [&](int n) {
          host.boxes.clear();
          notes().log.clear();
          return reachesFault(notes(), n, run);
        },
        [&](int) {
          EXPECT_EQ(host.boxes, Boxes({{standardErrorText(70) + u" in line 0"_s, box::Critical,
                                        u"Program Error in: "_s + name}}));
          EXPECT_EQ(host.pointerCode, pointer::Default);
        });
    EXPECT_GE(runs, 8) << name.toStdString();
    EXPECT_EQ(host.boxes, Boxes());
  }
}

// What a directory of very many files asks of the model grows with their number, not faster.
class ManyDatabases : public Dispatch {
 public:
  ManyDatabases(int count, int& asked) : count_(count), asked_(asked) {}
  Value get(const QString& name) override {
    ++asked_;
    return name == u"FILEPATH" ? Value(u"apps/db%1.nsf"_s.arg((next_ * 7919) % count_, 6, 10, QChar(u'0')))
                               : Value();
  }
  void set(const QString&, const Value&) override {}
  Value call(const QString& name, const QVector<Value>&) override {
    ++asked_;
    next_ = name == u"GETFIRSTDATABASE" ? 0 : next_ + 1;
    if (next_ >= count_) return Object();
    return Object(self);
  }
  std::shared_ptr<Dispatch> self;  // one object stands for the directory and its databases

 private:
  int count_, next_ = 0;
  int& asked_;
};

TEST_F(SelectionTest, TenThousandDatabasesAreAskedOnceEach) {
  openTool();
  QVector<int> asked;
  for (const int count : {1'000, 10'000}) {
    int calls = 0;
    const auto many = std::make_shared<ManyDatabases>(count, calls);
    many->self = many;
    notes().replies.insert(u"GETDBDIRECTORY"_s, Object(many));
    window().txtMaskSorce->setText(u"DB0"_s);
    window().cmdExpand->click.fire();
    asked += calls;
    many->self.reset();
    EXPECT_EQ(sources().size(), count);
    EXPECT_EQ(sources().first(), "apps/db000000.nsf");
    EXPECT_EQ(sources().last(), u"apps/db%1.nsf"_s.arg(count - 1, 6, 10, QChar(u'0')));
  }
  EXPECT_EQ(asked[1], 10 * (asked[0] - 1) + 1);
}

// --- views and agents ---

TEST_F(SelectionTest, ADoubleClickListsViewsAndAgentsAndTakesTheTitleBehindTheUnderscore) {
  const auto store = make(u"apps/Orders.nsf"_s, {}, {}, u"ACME_Orders_2024"_s);
  for (const QString& view : {u"b) By date|Date"_s, u"(All)"_s}) addView(*store, view);
  for (const QString& agent : {u"Nightly|night"_s, u"(Clean)"_s}) addAgent(*store, agent);
  openTool();
  choose(*window().lstDBNames, orders);
  window().lstViewNames->addItem(u"old"_s);
  window().lstAgentNames->addItem(u"old"_s);
  window().lstDBNames->setFocus();
  QTest::keyClick(window().lstDBNames, Qt::Key_Return);
  EXPECT_EQ(rowsOf(*window().lstViewNames), QStringList({u"(All)"_s, u"b) By date"_s})) << "without aliases";
  EXPECT_EQ(rowsOf(*window().lstAgentNames), QStringList({u"(Clean)"_s, u"Nightly|night"_s})) << "with them";
  EXPECT_EQ(window().txtFind->text(), "Orders_2024");
  EXPECT_EQ(state().gDbPath, orders);
  EXPECT_TRUE(state().gDb.isNothing());
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SelectionTest, ATitleWithoutAnUnderscoreGoesInWholeAndAFilledSearchTextStays) {
  make(u"apps/Orders.nsf"_s, {}, {}, u"Orders 2024"_s);
  openTool();
  choose(*window().lstDBNames, orders);
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(window().txtFind->text(), "Orders 2024");
  window().txtFind->setText(u"mine"_s);
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(window().txtFind->text(), "mine");
}

TEST_F(SelectionTest, ADatabaseWithoutDesignListsNothingAndTakesItsTitle) {
  make(u"apps/Orders.nsf"_s, {}, {}, u"Bare"_s);
  openTool();
  choose(*window().lstDBNames, orders);
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(rowsOf(*window().lstViewNames) + rowsOf(*window().lstAgentNames), QStringList());
  EXPECT_EQ(window().txtFind->text(), "Bare");
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SelectionTest, WhileASearchRunsADoubleClickDoesNothing) {
  openTool();
  choose(*window().lstDBNames, u"mail.nsf"_s);
  window().lstViewNames->addItem(u"kept"_s);
  state().gSearchBusy = true;
  state().gDbPath = u"before"_s;
  notes().log.clear();
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(rowsOf(*window().lstViewNames), QStringList(u"kept"_s));
  EXPECT_EQ(state().gDbPath, "before");
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(SelectionTest, AServersDatabaseThatCannotBeOpenedIsToldAndALocalOneIsReported) {
  addServers();
  openTool();
  window().lstDBNames->addItem(u"gone.nsf"_s);
  choose(*window().lstDBNames, u"gone.nsf"_s);
  window().lstViewNames->addItem(u"old"_s);
  host.pointers.clear();
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(host.boxes, Boxes({{u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s}}));
  EXPECT_EQ(rowsOf(*window().lstViewNames), QStringList()) << "cleared before";
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_TRUE(state().gDb.isNothing());
  host.boxes.clear();
  window().lstServer->setText(u"Local"_s);
  window().lstDBNames->dblClick.fire();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"));
  EXPECT_EQ(host.pointers, QVector<int>());
}

TEST_F(SelectionTest, AfterADatabaseThatDidNotOpenTheNextOneIsListed) {
  addServers();
  openTool();
  window().lstDBNames->addItem(u"gone.nsf"_s);
  choose(*window().lstDBNames, u"gone.nsf"_s);
  window().lstDBNames->dblClick.fire();
  choose(*window().lstDBNames, u"names.nsf"_s);
  window().lstDBNames->dblClick.fire();
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(rowsOf(*window().lstViewNames), QStringList(u"($Servers)"_s));
}

TEST_F(SelectionTest, OnAServerAFailureInAnyPlaceIsSilentAndLocallyItIsReported) {
  addServers();
  for (const QString& server : {QString(), kHub}) {
    const auto store = make(u"apps/Orders.nsf"_s, server, {}, u"Orders"_s);
    addView(*store, u"All"_s);
    addAgent(*store, u"Nightly"_s);
  }
  openTool();
  for (const QString& server : {u"Local"_s, kHub}) {
    window().lstServer->setText(server);
    const bool local = server == u"Local";
    const int runs = withEveryFault(
        [&](int n) {
          window().cmdExpand->click.fire();  // empties the search text too
          choose(*window().lstDBNames, orders);
          host.boxes.clear();
          host.setPointer(pointer::Default);
          notes().log.clear();
          return reachesFault(notes(), n, [&] { window().lstDBNames->dblClick.fire(); });
        },
        [&](int n) {
          const bool notOpened = n == 1;
          if (local) {
            EXPECT_EQ(host.boxes, Boxes({report(70)}));
            EXPECT_EQ(host.pointerCode, notOpened ? pointer::Default : pointer::Hourglass);
          } else if (notOpened) {
            EXPECT_EQ(host.boxes,
                      Boxes({{u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s}}));
          } else {
            EXPECT_EQ(host.boxes, Boxes());
            EXPECT_EQ(host.pointerCode, pointer::Default);
            const int shown = rowsOf(*window().lstViewNames).size() + rowsOf(*window().lstAgentNames).size() +
                              (window().txtFind->text().isEmpty() ? 0 : 1);
            EXPECT_EQ(shown, 2) << "the one that failed lacks";
          }
        });
    EXPECT_EQ(runs, 6);
    EXPECT_EQ(host.boxes, Boxes());
  }
}

// --- the sample of a view ---

class SampleTest : public SelectionTest {
 protected:
  SampleTest() { store = make(u"apps/Orders.nsf"_s, {}, {}, u"Orders"_s); }
  void openView(const QString& view = u"All"_s) {
    openTool();
    choose(*window().lstDBNames, orders);
    window().lstDBNames->dblClick.fire();
    window().txtFind->setText({});
    window().chkFields->setValue(1);
    viewRow = view;
    host.yields = 0;
  }
  void clickView() { choose(*window().lstViewNames, viewRow); }
  // The click as the user does it: a failure ends in the general report.
  void pressView() {
    const ListBox& list = *window().lstViewNames;
    const QRect place = list.visualRect(list.model()->index(list.find(viewRow), 0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
  }
  void addDocuments(int count) {
    for (int i = 0; i < count; ++i)
      addDocument(*store, {{u"Form"_s, u"Order"_s}, {u"No"_s, QString::number(i)}});
  }

  std::shared_ptr<Database> store;
  QString viewRow;
};

TEST_F(SampleTest, CountsTheEntriesAndWithoutTheCheckStopsThere) {
  addView(*store, u"All"_s);
  addDocuments(3);
  openView();
  window().chkFields->setValue(0);
  clickView();
  EXPECT_EQ(window().txtDocsSelected->text(), "3");
  EXPECT_EQ(fields(), QStringList());
  EXPECT_EQ(window().txtNumDocs->text(), "250");
  EXPECT_TRUE(state().gDb) << "stays open in this case";
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(host.yields, 1);
}

TEST_F(SampleTest, ListsEveryItemOnceAndASecondClickAddsNothing) {
  addView(*store, u"All"_s);
  addDocument(*store, {{u"Form"_s, u"Order"_s}, {u"Subject"_s, u"first"_s}});
  addDocument(*store, {{u"Form"_s, u"Memo"_s}, {u"Note"_s, u"second"_s}});
  openView();
  clickView();
  EXPECT_EQ(fields(), QStringList({u"Form: Order"_s, u"Note: second"_s, u"Subject: first"_s}));
  EXPECT_EQ(window().txtNumDocs->text(), "1");
  EXPECT_TRUE(state().gDb.isNothing());
  EXPECT_EQ(host.pointerCode, pointer::Default);
  EXPECT_EQ(host.yields, 2);
  clickView();
  EXPECT_EQ(fields().size(), 3);
  EXPECT_EQ(window().fldList->selCount(), 0);
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SampleTest, TakesOnlyItemsThatHoldTheSearchTextInItsOwnLetters) {
  addView(*store, u"All"_s);
  addDocument(*store, {{u"A"_s, u"the Contract"_s}, {u"B"_s, u"a contract"_s}, {u"C"_s, u"none"_s}});
  openView();
  window().txtFind->setText(u"contract"_s);
  clickView();
  EXPECT_EQ(fields(), QStringList(u"B: a contract"_s));
}

TEST_F(SampleTest, AnItemWhoseNameEndsInARowOfAnotherOneCountsAsPresent) {
  addView(*store, u"All"_s);
  addDocument(*store, {{u"StartDate"_s, u"1"_s},
                       {u"Date"_s, u"2"_s},
                       {u"date"_s, u"3"_s},
                       {u"Due"_s, u"see Memo: x"_s},
                       {u"Memo"_s, u"4"_s}});
  openView();
  clickView();
  EXPECT_EQ(fields(), QStringList({u"date: 3"_s, u"Due: see Memo: x"_s, u"StartDate: 1"_s}))
      << "letters count";
}

TEST_F(SampleTest, ALimitReadsOneDocumentMoreAndTheBoxShowsTheProgress) {
  addView(*store, u"All"_s);
  for (int i = 0; i < 6; ++i) addDocument(*store, {{u"Item%1"_s.arg(i), u"x"_s}});
  openView();
  const auto sampled = [this](const QString& limit) {
    window().fldList->clear();
    window().txtNumDocs->setText(limit);
    host.boxes.clear();
    clickView();
    return std::pair(int(fields().size()), window().txtNumDocs->text());
  };
  EXPECT_EQ(sampled(u"1"_s), std::pair(2, u"1"_s));
  EXPECT_EQ(sampled(u"3"_s), std::pair(4, u"3"_s));
  EXPECT_EQ(sampled(u"5"_s), std::pair(6, u"5"_s));
  // With fewer documents than the limit the box ends at their number without the first one.
  EXPECT_EQ(sampled(u"250"_s), std::pair(6, u"5"_s));
  EXPECT_EQ(sampled(u"2 or so"_s), std::pair(3, u"2"_s));
  EXPECT_EQ(sampled(u"1.5"_s), std::pair(3, u"2"_s));
  EXPECT_EQ(sampled(u"2.5"_s), std::pair(3, u"2"_s)) << "halves to the even number";
  EXPECT_EQ(sampled(u"-4"_s), std::pair(1, u"-4"_s));
  EXPECT_EQ(sampled(u"0"_s), std::pair(1, u"0"_s));
  EXPECT_EQ(sampled(u"x"_s), std::pair(1, u"x"_s));
}

TEST_F(SampleTest, ALimitBeyondItsWidthIsReportedBehindTheFirstDocument) {
  addView(*store, u"All"_s);
  addDocuments(2);
  openView();
  window().txtNumDocs->setText(u"3000000000"_s);
  pressView();
  EXPECT_EQ(host.boxes, Boxes({report(err::Overflow)}));
  EXPECT_EQ(fields(), QStringList());
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
}

// A view of very many documents that are all the same one.
class EndlessView : public Dispatch {
 public:
  explicit EndlessView(Object document) : document_(std::move(document)) {}
  Value get(const QString&) override { return 40'000; }
  void set(const QString&, const Value&) override {}
  Value call(const QString&, const QVector<Value>&) override { return document_; }

 private:
  Object document_;
};

class OneItemDocument : public Dispatch {
 public:
  Value get(const QString&) override { return Value::array({}); }
  void set(const QString&, const Value&) override {}
  Value call(const QString&, const QVector<Value>&) override { return {}; }
};

TEST_F(SampleTest, TheCounterEndsAtItsWidth) {
  addView(*store, u"All"_s);
  openView();
  notes().replies.insert(u"GETVIEW"_s,
                         Object(std::make_shared<EndlessView>(Object(std::make_shared<OneItemDocument>()))));
  window().txtNumDocs->setText(u"40000"_s);
  pressView();
  EXPECT_EQ(host.boxes, Boxes({report(err::Overflow)}));
  EXPECT_EQ(window().txtNumDocs->text(), "32767");
  EXPECT_EQ(window().txtDocsSelected->text(), "40000");
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
}

TEST_F(SampleTest, EveryKindOfItemHasATextAndRowsKeepIt) {
  addView(*store, u"All"_s);
  Note note = document(u"Memo"_s);
  note.add(u"Lines"_s, itemflag::Summary, textValue(u"a\r\nb"_s));
  note.add(u"Number"_s, itemflag::Summary, numberValue(1.5));
  note.add(u"Several"_s, itemflag::Summary, textListValue({u"x"_s, u"y"_s}));
  note.add(u"Odd"_s, 0, rawValue(quint16(77), QByteArray("\x01\x02", 2)));
  note.add(u"$Formula"_s, 0, sourceFormulaValue(u"SELECT @All"_s));
  RichText rich;
  rich.beginParagraph();
  rich.appendText(u"words"_s);
  note.add(u"Rich"_s, 0, rawValue(itemtype::RichText, rich.toBytes()));
  for (const QByteArray& part : mimePartValues("Content-Type: text/plain\r\n\r\nhello\r\n"))
    note.add(u"Body"_s, 0, part);
  const std::shared_ptr<Database> mail = std::exchange(database, store);
  attach(note, u"a.txt"_s, "text");
  store->notes().save(note);
  openView();
  clickView();
  EXPECT_EQ(host.boxes, Boxes());
  const QStringList rows = fields();
  EXPECT_EQ(rows.size(), 9) << rows.join(u" | "_s).toStdString();
  EXPECT_TRUE(rows.contains(u"Lines: a\r\nb"_s));
  EXPECT_TRUE(rows.contains(u"Several: x;y"_s));
  EXPECT_TRUE(rows.contains(u"Odd: "_s));
  EXPECT_TRUE(rows.contains(u"$Formula: SELECT @All"_s));
  EXPECT_EQ(rows.filter(u"words"_s).size(), 1);
  clickView();
  EXPECT_EQ(fields(), rows);
}

TEST_F(SampleTest, ANestedClickLeavesTheOuterOneItsViewAndDocument) {
  addView(*store, u"All"_s);
  addDocuments(3);
  openView();
  bool nested = false;
  host.whileYielding = [&] {
    if (!std::exchange(nested, true)) clickView();
  };
  clickView();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(fields(), QStringList({u"Form: Order"_s, u"No: 0"_s}));
  EXPECT_TRUE(state().gDb.isNothing());
  EXPECT_EQ(host.yields, 4);
}

TEST_F(SampleTest, AnArrowKeyThatIsHeldWalksThroughTheViews) {
  for (const QString& view : {u"A"_s, u"B"_s, u"C"_s}) addView(*store, view);
  addDocuments(2);
  openView();
  ListBox& views = *window().lstViewNames;
  int held = 0;
  host.whileYielding = [&] {
    if (++held < 8) QTest::keyClick(&views, Qt::Key_Down);
  };
  views.setFocus();
  QTest::keyClick(&views, Qt::Key_Down);
  EXPECT_EQ(views.text(), "C");
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(window().txtDocsSelected->text(), "2");
}

TEST_F(SampleTest, ClosingTheWindowMeanwhileLeavesTheSampleWhole) {
  addView(*store, u"All"_s);
  addDocuments(3);
  openView();
  host.whileYielding = [&] {
    if (!window().isVisible()) return;
    window().close();
    form().cmdCMRcoll->click.fire();
    EXPECT_EQ(rowsOf(*window().lstViewNames), QStringList(u"All"_s)) << "shown as it was";
    window().close();
  };
  clickView();
  EXPECT_EQ(fields().size(), 2);
  EXPECT_FALSE(window().isVisible());
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(SampleTest, WithoutAChosenDatabaseOrViewTheClickIsReported) {
  addView(*store, u"All"_s);
  openView();
  window().lstDBNames->clear();
  pressView();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '"));
  EXPECT_EQ(state().gDbPath, "");
  host.boxes.clear();
  window().cmdExpand->click.fire();
  choose(*window().lstDBNames, orders);
  window().lstViewNames->addItem(u"Gone"_s);
  viewRow = u"Gone"_s;
  pressView();
  EXPECT_EQ(host.boxes, Boxes({report(err::ObjectNotSet)}));
  EXPECT_EQ(host.pointerCode, pointer::Hourglass) << "it stays behind a report";
}

TEST_F(SampleTest, TheDatabaseIsTheOneThatWasTouchedLast) {
  addView(*store, u"All"_s);
  addDocuments(3);
  openView();
  choose(*window().lstDBNames, u"mail.nsf"_s);
  choose(*window().lstDBNames, orders);
  ASSERT_EQ(window().lstDBNames->selCount(), 2);
  clickView();
  EXPECT_EQ(state().gDbPath, orders);
  EXPECT_EQ(window().txtDocsSelected->text(), "3");
}

TEST_F(SampleTest, AFailureInAnyPlaceIsReportedOnce) {
  addView(*store, u"All"_s);
  addDocuments(2);
  openView();
  const int runs = withEveryFault(
      [&](int n) {
        window().fldList->clear();
        window().txtNumDocs->setText(u"250"_s);
        host.boxes.clear();
        notes().log.clear();
        return reachesFault(notes(), n, [this] { pressView(); });
      },
      [&](int) { EXPECT_EQ(host.boxes, Boxes({report(70)})); });
  EXPECT_GT(runs, 12);
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(fields().size(), 2);
}

}  // namespace
}  // namespace lens
