#include <QAction>
#include <QLineEdit>
#include <QTextBlock>
#include <QTimer>

#include "client/client_fixture.h"
#include "embedded/search/full_text.h"
#include "embedded/store/sqlite_statement.h"

namespace lens {
namespace {

class ClientSearch : public Client {
 protected:
  ClientSearch() {
    Note first = memo(u"The pump house"_s), second = memo(u"Nothing"_s);
    first.add(u"Body"_s, 0, textValue(u"About a harbour"_s));
    second.add(u"Body"_s, 0, textValue(u"A pump, and another Pump"_s));
    house = save(first);
    body = save(second);
    save(memo(u"Something else"_s));
  }
  void find(const QString& query) {
    auto& box = part<QLineEdit>("searchBox");
    box.setFocus();
    box.setText(query);
    QTest::keyClick(&box, Qt::Key_Return);
  }
  QStringList subjects() {
    QStringList all;
    for (int row = 0; row < table().model()->rowCount(); ++row) all += cell(row, 1);
    all.sort();
    return all;
  }
  // A document with that text, among what was found for "pump"; the box that shows the text.
  RichTextBox& openFound(const QString& text) {
    Note note = memo(u"Letter"_s);
    note.add(u"Text"_s, 0, textValue(text));
    const NoteId id = save(note);
    createFullTextIndex(*mail);
    start();
    openMail();
    find(u"pump"_s);
    EXPECT_TRUE(window->openDocument(id));
    return part<RichTextBox>("readerContent");
  }
  QString currentView() { return part<QListWidget>("viewList").currentItem()->text(); }

  NoteId house, body;
};

TEST_F(ClientSearch, ListsWhatWordsAndQueriesFindAndOpensIt) {
  createFullTextIndex(*mail);
  start();
  openMail();
  find(u"pump"_s);
  EXPECT_EQ(subjects(), QStringList({u"Nothing"_s, u"The pump house"_s}));
  EXPECT_EQ(currentView(), u"Found: pump"_s);
  EXPECT_TRUE(part<QLabel>("documentLabel").text().contains(u"2 found"_s));
  find(u"pump AND NOT FIELD Subject CONTAINS house"_s);
  EXPECT_EQ(subjects(), QStringList(u"Nothing"_s));
  EXPECT_TRUE(table().hasFocus());
  QTest::keyClick(&table(), Qt::Key_Return);
  EXPECT_EQ(workspace->client().document(), body);
}

TEST_F(ClientSearch, ADatabaseThatCannotBeReadAnyMoreIsToldWhateverIsDoneWithTheResult) {
  createFullTextIndex(*mail);
  start();
  openMail();
  find(u"pump"_s);
  mail->connection().execute("ALTER TABLE note RENAME TO gone", enginefault::Damaged);
  part<QLineEdit>("searchBox").clear();
  EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
}

TEST_F(ClientSearch, MarksTheHitsInTheDocumentThatIsOpened) {
  createFullTextIndex(*mail);
  start();
  openMail();
  find(u"pump"_s);
  ASSERT_TRUE(window->openDocument(body));
  auto& content = part<QPlainTextEdit>("readerContent");
  EXPECT_EQ(content.toPlainText(), u"A pump, and another Pump"_s) << "the first item with a hit";
  const auto marks = content.extraSelections();
  ASSERT_EQ(marks.size(), 2);
  EXPECT_EQ(marks[0].cursor.selectedText(), u"pump"_s);
  EXPECT_EQ(marks[1].cursor.selectedText(), u"Pump"_s);
  const QAbstractItemModel& items = *part<QTableView>("readerItems").model();
  int bold = 0;
  for (int row = 0; row < items.rowCount(); ++row)
    bold += items.index(row, 0).data(Qt::FontRole).value<QFont>().bold();
  EXPECT_EQ(bold, 1);
  trigger("closeDocumentAction");
  showView(u"All documents"_s);
  ASSERT_TRUE(window->openDocument(body));
  part<QTableView>("readerItems").selectRow(2);
  EXPECT_TRUE(content.extraSelections().isEmpty()) << "nobody searched for it";
}

TEST_F(ClientSearch, GoesToTheFirstHitOfAValueOfManyLines) {
  RichTextBox& content = openFound(u"nothing of it\r\n"_s.repeated(300) + u"a pump"_s);
  content.grab();
  EXPECT_EQ(content.textCursor().block().text(), u"a pump"_s);
  EXPECT_GT(content.verticalScrollBar()->value(), 200);
}

TEST_F(ClientSearch, MarksTheHitsOfAVeryLongValueWhereverTheyStand) {
  const QString words = u"nothing of it "_s.repeated(40'000);
  RichTextBox& content = openFound(words + u"a pump "_s + words + u"another Pump"_s);
  ASSERT_GT(content.text().size(), 1'000'000);
  const int first = int(words.size()) + 2, second = int(content.text().size()) - 4;
  EXPECT_EQ(content.selStart(), first);
  for (const int place : {first, first + 3, second, second + 3}) EXPECT_EQ(content.colorAt(place), 0xFFu);
  EXPECT_NE(content.colorAt(first - 1), 0xFFu);
  content.refresh();
  EXPECT_TRUE(content.toPlainText().contains(u"a pump"_s)) << "it is in sight";
}

TEST_F(ClientSearch, OffersToMakeAnIndexWhereThereIsNone) {
  start();
  openMail();
  choice->sure = false;
  find(u"pump"_s);
  EXPECT_TRUE(choice->lastQuestion.contains(u"no full-text index"_s)) << choice->lastQuestion.toStdString();
  EXPECT_FALSE(hasFullTextIndex(*mail));
  EXPECT_EQ(currentView(), u"All documents"_s);
  choice->sure = true;
  find(u"pump"_s);
  EXPECT_TRUE(hasFullTextIndex(*mail));
  EXPECT_EQ(subjects().size(), 2);
}

TEST_F(ClientSearch, TellsAMistakeInAQueryAndLeavesTheListAlone) {
  createFullTextIndex(*mail);
  start();
  openMail();
  find(u"pump AND ("_s);
  EXPECT_FALSE(error().isEmpty());
  EXPECT_EQ(currentView(), u"All documents"_s);
  EXPECT_EQ(choice->lastQuestion, QString()) << "a mistake is told before an index is made";
  find(u"harbour"_s);
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(subjects(), QStringList(u"The pump house"_s));
}

TEST_F(ClientSearch, FindsWhatWasSavedSinceTheIndexWasMade) {
  createFullTextIndex(*mail);
  start();
  openMail();
  save(memo(u"A pump of today"_s));
  find(u"today"_s);
  EXPECT_EQ(subjects(), QStringList(u"A pump of today"_s));
}

TEST_F(ClientSearch, TheResultStaysUntilTheBoxIsEmptyOrAnotherDatabaseIsOpen) {
  createFullTextIndex(*mail);
  workspace->createDatabase({}, u"other.nsf"_s, {});
  start();
  openMail();
  find(u"pump"_s);
  showView(u"All documents"_s);
  EXPECT_EQ(subjects().size(), 3);
  window->refresh();
  showView(u"Found: pump"_s);
  EXPECT_EQ(subjects().size(), 2);
  part<QLineEdit>("searchBox").clear();
  EXPECT_EQ(currentView(), u"All documents"_s);
  EXPECT_TRUE(part<QListWidget>("viewList").findItems(u"Found"_s, Qt::MatchStartsWith).isEmpty());
  find(u"pump"_s);
  ASSERT_TRUE(window->openDatabase({{}, u"other.nsf"_s}));
  EXPECT_TRUE(part<QListWidget>("viewList").findItems(u"Found"_s, Qt::MatchStartsWith).isEmpty());
}

TEST_F(ClientSearch, AQueryThatFindsNothingSaysSo) {
  createFullTextIndex(*mail);
  start();
  openMail();
  find(u"submarine"_s);
  EXPECT_EQ(table().model()->rowCount(), 0);
  EXPECT_TRUE(part<QLabel>("documentLabel").text().contains(u"0 found"_s));
}

TEST_F(ClientSearch, ItsKeyLeadsToTheBox) {
  start();
  EXPECT_FALSE(part<QAction>("searchAction").isEnabled());
  openMail();
  trigger("searchAction");
  EXPECT_TRUE(part<QLineEdit>("searchBox").hasFocus());
}

TEST_F(ClientSearch, ItsKeyClosesADocumentThatHidesTheBox) {
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(house));
  for (const char* ofTheList : {"filterAction", "fitColumnsAction"})
    EXPECT_FALSE(part<QAction>(ofTheList).isEnabled()) << ofTheList;
  trigger("searchAction");
  EXPECT_TRUE(part<QLineEdit>("searchBox").hasFocus());
  EXPECT_TRUE(workspace->client().document().isNull());
  for (const char* ofTheList : {"openDocumentAction", "selectAllAction", "compareMarkedAction",
                                "exportViewAction", "filterAction", "fitColumnsAction"})
    EXPECT_TRUE(part<QAction>(ofTheList).isEnabled()) << ofTheList;
}

}  // namespace
}  // namespace lens
