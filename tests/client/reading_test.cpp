#include "client/client_fixture.h"
#include "client/item_model.h"
#include "embedded/richtext/rich_text.h"

namespace lens {

TEST_F(Client, DoubleClickOpensTheDocumentForPrograms) {
  save(memo(u"Pumps"_s));
  start();
  openMail();
  table().selectRow(0);
  EXPECT_TRUE(uiWorkspace().get(u"CURRENTDOCUMENT"_s).object().isNothing());
  const QPoint place = table().visualRect(table().model()->index(0, 1)).center();
  QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(page(), u"reader"_s);
  EXPECT_EQ(part<QLabel>("readerSubject").text(), u"Pumps"_s);
  const Object open = uiWorkspace().get(u"CURRENTDOCUMENT"_s).object();
  ASSERT_FALSE(open.isNothing());
  EXPECT_FALSE(open.get(u"DOCUMENT"_s).object().isNothing());
  EXPECT_EQ(unprocessed(), 0);  // the open document covers the view
}

TEST_F(Client, EnterOpensAndEscapeCloses) {
  const NoteId id = save(memo(u"Pumps"_s));
  start();
  openMail();
  table().setFocus();
  QTest::keyClick(&table(), Qt::Key_Return);
  EXPECT_EQ(workspace->client().document(), id);
  ASSERT_EQ(page(), u"reader"_s);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_EQ(workspace->client().document(), NoteId());
  EXPECT_EQ(page(), u"viewPage"_s);
  EXPECT_TRUE(table().hasFocus());
}

TEST_F(Client, TheCloseButtonClosesTheDocument) {
  const NoteId id = save(memo(u"Pumps"_s));
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  part<QPushButton>("readerClose").click();
  EXPECT_EQ(workspace->client().document(), NoteId());
  EXPECT_EQ(page(), u"viewPage"_s);
}

TEST_F(Client, AProgramClosesTheReader) {
  const NoteId id = save(memo(u"Pumps"_s));
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  uiWorkspace().get(u"CURRENTDOCUMENT"_s).object().call(u"Close"_s);
  EXPECT_EQ(page(), u"viewPage"_s);
  EXPECT_EQ(workspace->client().document(), NoteId());
}

TEST_F(Client, TheReaderShowsItemsWithTypeAndValue) {
  Note note = memo(u"Pumps"_s);
  RichText body;
  body.appendText(u"Dear Mr Okafor,"_s);
  body.appendBreak();
  body.appendText(u"see below."_s);
  note.add(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
  note.add(u"Counts"_s, 0, numberListValue({1, 2.5}));
  note.add(u"$Blob"_s, 0, rawValue(itemtype::UserData, QByteArray(5, 'x')));
  const NoteId id = save(note);
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  auto& items = part<QTableView>("readerItems");
  const auto cellOf = [&](int row, int column) {
    return items.model()->index(row, column).data().toString();
  };
  ASSERT_EQ(items.model()->rowCount(), 5);
  EXPECT_EQ(cellOf(1, ItemModel::Name), u"Subject"_s);
  EXPECT_EQ(cellOf(1, ItemModel::Type), u"TEXT"_s);
  EXPECT_EQ(cellOf(2, ItemModel::Type), u"RICHTEXT"_s);
  EXPECT_EQ(cellOf(2, ItemModel::Content), u"Dear Mr Okafor, see below."_s);
  EXPECT_EQ(cellOf(4, ItemModel::Content), u"(5 bytes)"_s);
  items.selectRow(2);
  EXPECT_TRUE(part<QPlainTextEdit>("readerContent").toPlainText().startsWith(u"Dear Mr Okafor,\nsee"_s));
  items.selectRow(3);
  EXPECT_EQ(part<QPlainTextEdit>("readerContent").toPlainText().count(u'\n'), 1);
  EXPECT_TRUE(part<QPlainTextEdit>("readerContent").isReadOnly());
}

// The box holds all of it and lays out what is in sight.
TEST_F(Client, AVeryLongValueIsShownInPartAndIsThereWhole) {
  const QString text = QString(2'000'000, u'x') + u"\r\nend";
  Note note = memo(u"Pumps"_s);
  note.add(u"Long"_s, 0, textValue(text));
  const NoteId id = save(note);
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  part<QTableView>("readerItems").selectRow(int(note.items.size()) - 1);
  auto& content = part<RichTextBox>("readerContent");
  EXPECT_TRUE(content.text() == text);
  EXPECT_LT(content.document()->characterCount(), 500'000);
  content.setFocus();
  QTest::keyClick(&content, Qt::Key_End, Qt::ControlModifier);
  EXPECT_TRUE(content.toPlainText().endsWith(u"x\nend"_s));
  QTest::keyClick(&content, Qt::Key_A);
  EXPECT_TRUE(content.text() == text) << "it is for reading";
  part<QTableView>("readerItems").selectRow(0);
  EXPECT_LT(content.text().size(), 100);
}

TEST_F(Client, RefreshReadsTheOpenDocumentAnewAndClosesOneThatHasGone) {
  Note note = memo(u"Pumps"_s);
  mail->notes().save(note);
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(note.header.id));
  note.find(u"Subject")->value = textValue(u"Valves");
  mail->notes().save(note);
  window->refresh();
  EXPECT_EQ(part<QLabel>("readerSubject").text(), u"Valves"_s);
  mail->notes().remove(note.header.id);
  window->refresh();
  EXPECT_EQ(page(), u"viewPage"_s);
  EXPECT_TRUE(error().contains(u"there is no note"_s)) << error().toStdString();
}

TEST_F(Client, OpeningADeletedNoteIsToldAndLeavesTheView) {
  const NoteId id = save(memo(u"Pumps"_s));
  start();
  openMail();
  mail->notes().remove(id);
  EXPECT_FALSE(window->openDocument(id));
  EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
  EXPECT_EQ(workspace->client().document(), NoteId());
  EXPECT_EQ(page(), u"viewPage"_s);
}

}  // namespace lens
