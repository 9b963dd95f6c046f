#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeWidget>
#include <limits>
#include <vector>

#include "client/client_fixture.h"
#include "client/list_table.h"
#include "client/note_texts.h"
#include "client/row_order.h"

namespace lens {
namespace {

class ListOrder : public Client {
 protected:
  QStringList column(int column) {
    QStringList texts;
    for (int row = 0; row < table().model()->rowCount(); ++row) texts += cell(row, column);
    return texts;
  }
  QStringList subjects() { return column(DocumentModel::Subject); }
  static void clickHeader(QTableView& list, int column) {
    QHeaderView& header = *list.horizontalHeader();
    const QPoint place(header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
                       header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
  }
  void filter(const QString& words) {
    auto& box = part<QLineEdit>("filterBox");
    box.setFocus();
    box.setText(words);
    QTest::keyClick(&box, Qt::Key_Return);
  }
  void saveFive() {
    for (const QString& subject : {u"pump 10"_s, u"Apple"_s, u"pump 9"_s, u"Ärger"_s, u"apple pie"_s})
      ids.push_back(save(memo(subject)));
  }

  QVector<NoteId> ids;
};

TEST_F(ListOrder, AClickOnAHeaderOrdersTheRowsUpThenDownThenAsTheyCame) {
  saveFive();
  start();
  openMail();
  const QStringList own = subjects();
  clickHeader(table(), DocumentModel::Subject);
  EXPECT_EQ(subjects(), QStringList({u"Apple"_s, u"apple pie"_s, u"Ärger"_s, u"pump 9"_s, u"pump 10"_s}));
  clickHeader(table(), DocumentModel::Subject);
  EXPECT_EQ(subjects(), QStringList({u"pump 10"_s, u"pump 9"_s, u"Ärger"_s, u"apple pie"_s, u"Apple"_s}));
  clickHeader(table(), DocumentModel::Subject);
  EXPECT_EQ(subjects(), own);
}

TEST(RowOrder, WhatIsNoNumberAtAllStandsBehindTheNumbers) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  const std::vector<double> numbers = {3, none, 1, none, 2, 9, none, 8, 7};
  const RowSource rows{int(numbers.size()),
                       [](int) { return true; },
                       {},
                       [&](int row, int) {
                         return RowKey{true, numbers[row], {}};
                       }};
  EXPECT_EQ(arrangedRows(rows, {0, Qt::AscendingOrder, {}}, {}), QVector<int>({2, 4, 0, 8, 7, 5, 1, 3, 6}));
  EXPECT_EQ(arrangedRows(rows, {0, Qt::DescendingOrder, {}}, {}), QVector<int>({1, 3, 6, 5, 7, 8, 0, 4, 2}));
}

TEST_F(ListOrder, TimesAndNumbersAreOrderedByWhatTheyAre) {
  saveFive();
  Note old = memo(u"of old"_s);
  old.header.unid = Unid::create();
  old.header.modified = timeDateOf(QDateTime(QDate(2019, 12, 31), QTime(12, 0), QTimeZone::utc()), {});
  mail->notes().saveAsGiven(old);
  Note future = memo(u"to come"_s);
  future.header.unid = Unid::create();
  future.header.modified = timeDateOf(QDateTime(QDate(2090, 1, 1), QTime(12, 0), QTimeZone::utc()), {});
  mail->notes().saveAsGiven(future);
  start();
  openMail();
  clickHeader(table(), DocumentModel::Modified);
  EXPECT_EQ(subjects().first(), u"of old"_s);
  EXPECT_EQ(subjects().last(), u"to come"_s) << "01.01.2090 is behind 31.12.2019";
  clickHeader(table(), DocumentModel::Id);
  QStringList idTexts = column(DocumentModel::Id);
  EXPECT_TRUE(std::is_sorted(idTexts.begin(), idTexts.end()));
}

TEST_F(ListOrder, MarksAndTheOpenedDocumentFollowTheOrder) {
  saveFive();
  start();
  openMail();
  table().selectRow(0);
  clickHeader(table(), DocumentModel::Subject);
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>{ids[0]});
  EXPECT_EQ(table().selectionModel()->selectedRows().value(0).row(), 4);
  QTest::keyClick(&table(), Qt::Key_Return);
  EXPECT_EQ(workspace->client().document(), ids[0]);
}

TEST_F(ListOrder, TheOrderStaysWhenTheViewIsReadAgainAndGoesWithOtherColumns) {
  saveFive();
  start();
  openMail();
  clickHeader(table(), DocumentModel::Subject);
  save(memo(u"Aardvark"_s));
  window->refresh();
  EXPECT_EQ(subjects().first(), u"Aardvark"_s);
}

TEST_F(ListOrder, TheFilterShowsRowsWithAllItsWordsInAnyColumn) {
  saveFive();
  start();
  openMail();
  filter(u"PUMP memo"_s);
  EXPECT_EQ(subjects(), QStringList({u"pump 10"_s, u"pump 9"_s}));
  EXPECT_TRUE(part<QLabel>("documentLabel").text().contains(u"2 of 5"_s));
  trigger("selectAllAction");
  EXPECT_EQ(workspace->client().visibleSelection().size(), 2) << "what is not shown is not marked";
  filter(u"nothing like it"_s);
  EXPECT_EQ(subjects(), QStringList());
  part<QLineEdit>("filterBox").setFocus();
  QTest::keyClick(&part<QLineEdit>("filterBox"), Qt::Key_Escape);
  EXPECT_EQ(part<QLineEdit>("filterBox").text(), QString());
  EXPECT_TRUE(QTest::qWaitFor([&] { return table().model()->rowCount() == 5; }));
}

TEST_F(ListOrder, TheFilterFollowsTheTypingAndGoesWithItsDatabase) {
  saveFive();
  workspace->createDatabase({}, u"other.nsf"_s, {});
  start();
  openMail();
  part<QLineEdit>("filterBox").setFocus();
  QTest::keyClicks(&part<QLineEdit>("filterBox"), u"apple"_s);
  EXPECT_TRUE(QTest::qWaitFor([&] { return subjects() == QStringList({u"Apple"_s, u"apple pie"_s}); }));
  ASSERT_TRUE(window->openDatabase({{}, u"other.nsf"_s}));
  openMail();
  EXPECT_EQ(subjects().size(), 5);
  EXPECT_EQ(part<QLineEdit>("filterBox").text(), QString());
}

TEST_F(ListOrder, TypingFindsARowByAnyColumn) {
  saveFive();
  start();
  openMail();
  table().setFocus();
  QTest::keyClicks(&table(), u"ap"_s);
  EXPECT_EQ(cell(table().currentIndex().row(), 1), u"Apple"_s);
  QTest::keyClicks(&table(), u"ple p"_s);
  EXPECT_EQ(cell(table().currentIndex().row(), 1), u"apple pie"_s) << "what is typed goes on";
  QTest::qWait(QApplication::keyboardInputInterval() + 50);
  QTest::keyClicks(&table(), u"9"_s);
  EXPECT_EQ(cell(table().currentIndex().row(), 1), u"pump 9"_s) << "a later word counts too";
  QTest::qWait(QApplication::keyboardInputInterval() + 50);
  const int row = table().currentIndex().row();
  QTest::keyClicks(&table(), u"zzz"_s);
  EXPECT_EQ(table().currentIndex().row(), row);
}

TEST_F(ListOrder, CtrlCCopiesWholeRows) {
  saveFive();
  start();
  openMail();
  table().setFocus();
  table().selectRow(1);
  table().selectionModel()->select(table().model()->index(3, 0),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
  QTest::keyClick(&table(), Qt::Key_C, Qt::ControlModifier);
  const QStringList lines = QApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 2);
  EXPECT_TRUE(lines[0].startsWith(u"Memo\tApple\t"_s)) << lines[0].toStdString();
  EXPECT_TRUE(lines[1].contains(noteIdText(ids[3]))) << lines[1].toStdString();
  ASSERT_TRUE(window->openDocument(ids[0]));
  auto& items = part<QTableView>("readerItems");
  items.setFocus();
  items.selectRow(1);
  QTest::keyClick(&items, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), u"Subject\tTEXT\tpump 10\n"_s);
}

TEST_F(ListOrder, ItemsAreOrderedToo) {
  Note note = memo(u"x"_s);
  note.add(u"Alpha"_s, 0, textValue(u"last"_s));
  const NoteId id = save(note);
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  auto& items = part<QTableView>("readerItems");
  const auto name = [&](int row) { return items.model()->index(row, 0).data().toString(); };
  clickHeader(items, 0);
  EXPECT_EQ(name(0), u"Alpha"_s);
  items.selectRow(0);
  EXPECT_EQ(part<QPlainTextEdit>("readerContent").toPlainText(), u"last"_s) << "the value belongs to the row";
  clickHeader(items, 0);
  EXPECT_EQ(name(0), u"Subject"_s);
  clickHeader(items, 0);
  EXPECT_EQ(name(0), u"Form"_s) << "as the document has them";
}

TEST_F(ListOrder, ListsHaveMenusOfTheirOwn) {
  start();
  for (const char* list : {"databaseTree", "viewList", "documentTable"}) {
    auto& view = part<QAbstractItemView>(list);
    EXPECT_EQ(view.contextMenuPolicy(), Qt::ActionsContextMenu) << list;
    EXPECT_GE(view.actions().size(), 2) << list;
  }
  EXPECT_TRUE(part<QTreeWidget>("databaseTree").actions().contains(&part<QAction>("deleteDatabaseAction")));
}

TEST_F(ListOrder, ColumnsFitWhatIsInThem) {
  Note note = memo(u"x"_s);
  note.items[0].value = textValue(u"A form with quite a long name"_s);
  save(note);
  start();
  openMail();
  const int wanted = table().fontMetrics().horizontalAdvance(u"A form with quite a long name"_s);
  EXPECT_TRUE(QTest::qWaitFor([&] { return table().columnWidth(DocumentModel::Form) >= wanted; }))
      << "from the start";
  table().setColumnWidth(DocumentModel::Form, 30);
  window->refresh();
  EXPECT_EQ(table().columnWidth(DocumentModel::Form), 30) << "what the user made of it stays";
  trigger("fitColumnsAction");
  EXPECT_GE(table().columnWidth(DocumentModel::Form), wanted);
}

TEST(DesignKinds, AreNamedAsPeopleTellThemApart) {
  const Regional regional{QLocale::c()};
  const QVector<std::tuple<quint16, QString, QString>> kinds = {
      {noteclass::Form, u"34i"_s, u"Image resource"_s},
      {noteclass::Form, u"34gC~"_s, u"File resource"_s},
      {noteclass::Form, u"34=Q"_s, u"Style sheet"_s},
      {noteclass::Form, u""_s, u"Form"_s},
      {noteclass::Form, u"UC"_s, u"Subform"_s},
      {noteclass::Form, u"WC"_s, u"Page"_s},
      {noteclass::View, u"FY"_s, u"Folder"_s},
      {noteclass::View, u"Y"_s, u"View"_s},
      {noteclass::Filter, u"s34Q"_s, u"Script library"_s},
      {noteclass::Filter, u"fL3"_s, u"Agent"_s},
      {noteclass::Icon, u""_s, u"Icon"_s},
      {noteclass::Acl, u""_s, u"Access control list"_s}};
  for (const auto& [noteClass, flags, name] : kinds) {
    Note note;
    note.header.noteClass = noteClass;
    note.add(u"$Flags"_s, 0, textValue(flags));
    EXPECT_EQ(textsOf(note, regional).form, name) << flags.toStdString();
  }
}

}  // namespace
}  // namespace lens
