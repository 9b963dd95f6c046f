#include <QElapsedTimer>
#include <QSignalSpy>

#include "client/client_fixture.h"
#include "client/document_model.h"

namespace lens {

TEST_F(Client, ExplainsThatNoDatabaseIsOpen) {
  start();
  EXPECT_EQ(page(), u"emptyPage"_s);
  EXPECT_EQ(window->windowTitle(), u"Client"_s);
  EXPECT_EQ(part<QLabel>("emptyText").text(), u"No database is open: choose one on the left"_s);
  EXPECT_TRUE(databaseOnTop().isNothing());
}

TEST_F(Client, EnterInTheTreeOpensTheDatabaseForPrograms) {
  start();
  auto& tree = part<DatabaseTree>("databaseTree");
  tree.setFocus();
  QTest::keyClick(&tree, Qt::Key_Down);
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(page(), u"viewPage"_s);
  EXPECT_TRUE(table().hasFocus());
  EXPECT_EQ(window->windowTitle(), u"Client: Karin's mail"_s);
  EXPECT_EQ(databaseOnTop().get(u"TITLE"_s), Value(u"Karin's mail"_s));
}

TEST_F(Client, DoubleClickInTheTreeOpensTheDatabase) {
  start();
  auto& tree = part<DatabaseTree>("databaseTree");
  const QPoint place = tree.visualItemRect(tree.topLevelItem(0)->child(0)).center();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, place);
  ASSERT_NE(workspace->client().database(), nullptr);
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
}

TEST_F(Client, ListsServersAndTheirDatabasesWhenUnfolded) {
  workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"names.nsf"_s, {});
  start();
  auto& tree = part<DatabaseTree>("databaseTree");
  ASSERT_EQ(tree.topLevelItemCount(), 2);
  QTreeWidgetItem* hub = tree.topLevelItem(1);
  EXPECT_EQ(hub->text(0), u"Hub/Acme"_s);
  EXPECT_EQ(hub->childCount(), 0);
  hub->setExpanded(true);
  ASSERT_EQ(hub->childCount(), 1);
  EXPECT_EQ(hub->child(0)->text(0), u"names.nsf"_s);
}

TEST_F(Client, ShowsWhatTheStateHoldsWhenItStarts) {
  const NoteId id = save(memo(u"Pumps"_s));
  workspace->client().showDatabase({QString(), u"mail.nsf"_s});
  workspace->client().showDocument(id);
  start();
  EXPECT_EQ(page(), u"reader"_s);
  EXPECT_EQ(part<QLabel>("readerSubject").text(), u"Pumps"_s);
}

TEST_F(Client, ListsFormSubjectAndIdOfAllDocuments) {
  const NoteId first = save(memo(u"Pumps"_s));
  Note untitled;
  untitled.add(u"Form"_s, 0, textValue(u"Order"));
  untitled.add(u"$Ref"_s, 0, textValue(u"hidden"));
  untitled.add(u"Customer"_s, 0, textValue(u"Okafor"));
  save(untitled);
  start();
  openMail();
  ASSERT_EQ(table().model()->rowCount(), 2);
  EXPECT_EQ(cell(0, DocumentModel::Form), u"Memo"_s);
  EXPECT_EQ(cell(0, DocumentModel::Subject), u"Pumps"_s);
  EXPECT_EQ(cell(0, DocumentModel::Id), u"%1"_s.arg(first.value(), 8, 16, QChar(u'0')).toUpper());
  EXPECT_FALSE(cell(0, DocumentModel::Modified).isEmpty());
  EXPECT_EQ(cell(1, DocumentModel::Form), u"Order"_s);
  EXPECT_EQ(cell(1, DocumentModel::Subject), u"Okafor"_s);
}

TEST_F(Client, AViewListsItsOwnDocumentsAndDesignNotesTheRest) {
  save(memo(u"Pumps"_s));
  Note order;
  order.add(u"Form"_s, itemflag::Summary, textValue(u"Order"));
  save(order);
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, 0, textValue(u"Orders|by form"));
  view.add(u"$Formula"_s, 0, textValue(u"SELECT Form = \"Order\""));
  save(view);
  start();
  openMail();
  EXPECT_EQ(table().model()->rowCount(), 2);
  showView(u"Orders"_s);
  ASSERT_EQ(table().model()->rowCount(), 1);
  EXPECT_EQ(cell(0, DocumentModel::Form), u"Order"_s);
  showView(u"Design notes"_s);
  ASSERT_EQ(table().model()->rowCount(), 1);
  EXPECT_EQ(cell(0, DocumentModel::Form), u"View"_s);
  EXPECT_EQ(cell(0, DocumentModel::Subject), u"Orders|by form"_s);
}

TEST_F(Client, NavigatorsAndSharedColumnsAreNoViews) {
  for (const QString& flags : {QString(), u"F"_s, u"G3"_s, u"^"_s}) {
    Note note;
    note.header.noteClass = noteclass::View;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Flags %1"_s.arg(flags)));
    note.add(u"$Flags"_s, itemflag::Summary, textValue(flags));
    save(note);
  }
  start();
  openMail();
  QStringList titles;
  const auto& list = part<QListWidget>("viewList");
  for (int row = 2; row < list.count(); ++row) titles.append(list.item(row)->text());
  EXPECT_EQ(titles, QStringList({u"Flags"_s, u"Flags F (folder)"_s}));
}

TEST_F(Client, TellsWhichViewItShows) {
  Note note;
  note.header.noteClass = noteclass::View;
  note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Mine"));
  const NoteId view = save(note);
  start();
  openMail();
  EXPECT_EQ(workspace->client().view(), NoteId()) << "all documents are no view";
  part<QListWidget>("viewList").setCurrentRow(2);
  EXPECT_EQ(workspace->client().view(), view);
}

TEST_F(Client, AnEmptyViewSaysSo) {
  start();
  openMail();
  EXPECT_TRUE(part<QLabel>("documentLabel").text().contains(u"none in this view"_s));
}

TEST_F(Client, MarkedRowsAreTheUnprocessedDocuments) {
  QVector<NoteId> ids;
  for (int i = 0; i < 5; ++i) ids.push_back(save(memo(u"Memo %1"_s.arg(i))));
  start();
  openMail();
  EXPECT_EQ(unprocessed(), 0);
  auto* marks = table().selectionModel();
  for (int row : {3, 1})
    marks->select(table().model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>({ids[1], ids[3]}));
  EXPECT_EQ(unprocessed(), 2);
  trigger("selectAllAction");
  EXPECT_EQ(workspace->client().visibleSelection(), ids);
}

TEST_F(Client, RefreshShowsWhatWasSavedElsewhereAndKeepsTheMarks) {
  const NoteId first = save(memo(u"One"_s)), second = save(memo(u"Two"_s));
  start();
  openMail();
  table().selectRow(1);
  save(memo(u"Three"_s));
  workspace->notifyChanged({QString(), u"mail.nsf"_s});
  EXPECT_EQ(table().model()->rowCount(), 2);
  mail->notes().remove(first);
  QTest::keyClick(window.get(), Qt::Key_F5);
  ASSERT_EQ(table().model()->rowCount(), 2);
  EXPECT_EQ(cell(1, DocumentModel::Subject), u"Three"_s);
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>{second});
}

TEST_F(Client, AProgramCanRefreshTheView) {
  start();
  openMail();
  save(memo(u"One"_s));
  uiWorkspace().call(u"VIEWREFRESH"_s);
  EXPECT_TRUE(QTest::qWaitFor([&] { return table().model()->rowCount() == 1; }));
}

// Deleting thousands of rows asks for a refresh behind each: the window reads its view once, when events are
// taken, and not again within a quarter of a second.
TEST_F(Client, ABurstOfRefreshesReadsTheViewOnce) {
  QVector<NoteId> notes;
  for (int i = 0; i < 30; ++i) notes += save(memo(u"Memo %1"_s.arg(i)));
  start();
  openMail();
  QSignalSpy reads(table().model(), &QAbstractItemModel::modelReset);
  const auto removeTen = [&] {
    for (int i = 0; i < 10; ++i) {
      mail->notes().remove(notes.takeLast());
      workspace->notifyChanged({QString(), u"mail.nsf"_s});
      uiWorkspace().call(u"VIEWREFRESH"_s);
    }
  };
  removeTen();
  EXPECT_EQ(reads.count(), 0);
  QElapsedTimer time;
  time.start();
  EXPECT_TRUE(QTest::qWaitFor([&] { return table().model()->rowCount() == 20; }));
  EXPECT_EQ(reads.count(), 1);
  removeTen();
  removeTen();
  while (table().model()->rowCount() > 0 && time.elapsed() < 5000) {
    uiWorkspace().call(u"VIEWREFRESH"_s);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(table().model()->rowCount(), 0);
  EXPECT_LE(reads.count(), 2 + time.elapsed() / 250);
}

TEST_F(Client, WhatWaitsForARefreshIsSettledForAProgramThatAsks) {
  const NoteId first = save(memo(u"One"_s)), second = save(memo(u"Two"_s));
  start();
  openMail();
  trigger("selectAllAction");
  EXPECT_EQ(unprocessed(), 2);
  mail->notes().remove(first);
  uiWorkspace().call(u"VIEWREFRESH"_s);
  EXPECT_EQ(unprocessed(), 1);
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>{second});
}

TEST_F(Client, ARefreshThatWaitsEndsWithItsDatabase) {
  save(memo(u"One"_s));
  start();
  openMail();
  uiWorkspace().call(u"VIEWREFRESH"_s);
  window->closeDatabase();
  QTest::qWait(300);
  EXPECT_EQ(page(), u"emptyPage"_s);
  EXPECT_EQ(error(), QString());
}

TEST_F(Client, ReadsOnlyTheNotesOfRowsInSight) {
  Database::Transaction transaction(*mail);
  for (int i = 0; i < 3000; ++i) save(memo(u"Memo %1"_s.arg(i)));
  transaction.commit();
  start();
  openMail();
  expectOnlyRowsInSightAreRead(3000, 3000);
}

TEST_F(Client, FollowsAProgramThatShowsAnotherDatabase) {
  DatabaseInfo info;
  info.title = u"Orders"_s;
  workspace->createDatabase({}, u"orders.nsf"_s, info);
  start();
  openMail();
  workspace->client().showDatabase({QString(), u"orders.nsf"_s});
  EXPECT_EQ(window->windowTitle(), u"Client: Orders"_s);
  workspace->client().closeDatabase();
  EXPECT_EQ(page(), u"emptyPage"_s);
  EXPECT_EQ(window->windowTitle(), u"Client"_s);
}

TEST_F(Client, NamesTheFileThatCannotBeOpenedAndKeepsTheOldOne) {
  start();
  openMail();
  QFile file(workspace->dataDirectory() + u"/broken.nsf"_s);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database");
  file.close();
  EXPECT_FALSE(window->openDatabase({QString(), u"broken.nsf"_s}));
  EXPECT_TRUE(error().contains(u"broken.nsf"_s)) << error().toStdString();
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  trigger("refreshAction");
  EXPECT_EQ(error(), QString());
}

TEST_F(Client, MakesAnEmptyDatabaseAndOpensIt) {
  start();
  choice->name = u"drafts/new"_s;
  trigger("newDatabaseAction");
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(window->windowTitle(), u"Client: new"_s);
  EXPECT_TRUE(QFile::exists(workspace->dataDirectory() + u"/drafts/new.nsf"_s));
  choice->name = u"mail.nsf"_s;
  trigger("newDatabaseAction");
  EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
}

TEST_F(Client, DropsADatabaseThatAProgramRemoves) {
  save(memo(u"Hello"_s));
  start();
  openMail();
  databaseOnTop().call(u"CREATEREPLICA"_s, u""_s, u"copy.nsf"_s);
  auto& tree = part<DatabaseTree>("databaseTree");
  const auto rows = [&] { return tree.findItems(u"*.nsf"_s, Qt::MatchWildcard | Qt::MatchRecursive).size(); };
  EXPECT_EQ(rows(), 2);
  databaseOnTop().call(u"REMOVE"_s);
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(rows(), 1);
  EXPECT_EQ(table().model()->rowCount(), 0);
  EXPECT_TRUE(databaseOnTop().isNothing());
  window->openDatabase({QString(), u"copy.nsf"_s});
  EXPECT_EQ(table().model()->rowCount(), 1);
}

TEST_F(Client, ClosingTheWindowKeepsWhatIsOpen) {
  start();
  openMail();
  trigger("hideAction");
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(databaseOnTop().isNothing());
}

}  // namespace lens
