// The formulas of a note in the client window: their source, what is known of it, and a copy of it.
#include <QClipboard>
#include <QMenu>

#include "client/client_fixture.h"
#include "client/formula_model.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "support/compiled_formula.h"

namespace lens {
namespace {

class Formulas : public Client {
 protected:
  // A form with a formula in every state.
  Note form() {
    Note note;
    note.header.noteClass = noteclass::Form;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Order"));
    const auto add = [&](const QString& name, const QByteArray& bytes) {
      note.add(name, 0, rawValue(itemtype::Formula, bytes));
    };
    add(u"$WindowTitle"_s, compiled(u"REM {what is it};\n\"Order \" + Number"));
    add(u"Context"_s, compiled(u"@Round(a)"));
    add(u"Guessed"_s, QByteArray::fromHex("1c0000000e000500010061007f01030007000c000500093053304500"));
    add(u"Unnamed"_s, QByteArray::fromHex("0a0000000800c1000300"));
    add(u"Hidden"_s, QByteArray::fromHex("160009000c005a5a5a5a5a5a5a5a0400040004000400"));
    add(u"Unreadable"_s, "\x12\x01");
    add(u"Source"_s, sourceFormula(u"@Sqrt(a)"));
    add(u"Mistake"_s, sourceFormula(u"(a"));
    return note;
  }
  Note view() {
    ViewColumn plain, computed;
    plain.item = u"Subject"_s;
    computed.item = u"$0"_s;
    computed.formula = compiled(u"@Left(Subject; 2)");
    Note note;
    note.header.noteClass = noteclass::View;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Inbox"));
    note.add(u"$Formula"_s, itemflag::Summary,
             rawValue(itemtype::Formula, compiled(u"SELECT Form = \"Memo\"")));
    note.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue({plain, computed}));
    return note;
  }
  QDialog* dialog() { return window->findChild<QDialog*>(u"FormulaWindow"_s); }
  QTableView& formulas() { return part<QTableView>("formulaTable"); }
  QString told(int row, int column) { return formulas().model()->index(row, column).data().toString(); }
  QString heading() { return part<QLabel>("formulaHeading").text(); }
  QString source() { return part<QPlainTextEdit>("formulaSource").toPlainText(); }
  QString remark() { return part<QLabel>("formulaRemark").text(); }
  // Puts the cursor on the note in the list of design notes.
  void goTo(NoteId id) {
    showView(u"Design notes"_s);
    auto* model = qobject_cast<DocumentModel*>(table().model());
    const int row = int(model->noteIds().indexOf(id));
    ASSERT_GE(row, 0);
    table().setCurrentIndex(model->index(row, 0));
  }
};

TEST_F(Formulas, OfTheNoteUnderTheCursorAreListedWithWhatIsKnownOfThem) {
  const NoteId id = save(form());
  start();
  openMail();
  goTo(id);
  trigger("showFormulaAction");
  ASSERT_TRUE(dialog());
  EXPECT_TRUE(dialog()->isVisible());
  EXPECT_EQ(heading(), u"Form \"Order\", note ID 000008FA, has 8 formulas"_s);
  const struct {
    QString item, state, source, remark;
  } rows[] = {
      {u"$WindowTitle"_s, u"proven"_s, u"REM {what is it};\n\"Order \" + Number"_s,
       u"It was read from the compiled form, and every name in it is proven"_s},
      {u"Context"_s, u"names from context"_s, u"@Round(a)"_s,
       u"It was read from the compiled form with names that are not proven: @Round"_s},
      {u"Guessed"_s, u"names guessed"_s, u"@Log(a)"_s,
       u"It was read from the compiled form with names that are not proven: @Log"_s},
      {u"Unnamed"_s, u"names missing"_s, u"@Function_0C1"_s,
       u"It cannot run: it uses codes without a known name: function C1"_s},
      {u"Hidden"_s, u"hidden"_s, QString(), u"The formula is hidden: its source cannot be read by anybody"_s},
      {u"Unreadable"_s, u"unreadable"_s, QString(), u"It cannot be read: its size is wrong (byte 0)"_s},
      {u"Source"_s, u"kept as source"_s, u"@Sqrt(a)"_s, u"It was stored as source, as it stands here"_s},
      {u"Mistake"_s, u"kept as source"_s, u"(a"_s,
       u"It was stored as source, and cannot run: Missing right parenthesis (character 3)"_s},
  };
  ASSERT_EQ(formulas().model()->rowCount(), int(std::size(rows)));
  for (int row = 0; row < int(std::size(rows)); ++row) {
    SCOPED_TRACE(rows[row].item.toStdString());
    formulas().selectRow(row);
    EXPECT_EQ(told(row, FormulaModel::ItemName), rows[row].item);
    EXPECT_EQ(told(row, FormulaModel::State), rows[row].state);
    EXPECT_EQ(source(), rows[row].source);
    EXPECT_EQ(remark(), rows[row].remark);
    EXPECT_EQ(part<QPushButton>("formulaCopy").isEnabled(), !rows[row].source.isEmpty());
  }
}

TEST_F(Formulas, AreCopiedByTheButton) {
  const NoteId id = save(form());
  start();
  openMail();
  goTo(id);
  trigger("showFormulaAction");
  part<QPushButton>("formulaCopy").click();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), u"REM {what is it};\n\"Order \" + Number"_s);
  formulas().selectRow(6);
  part<QPushButton>("formulaCopy").click();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), u"@Sqrt(a)"_s);
}

TEST_F(Formulas, OfTheOpenNoteBeginAtTheCurrentItem) {
  const NoteId id = save(form());
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  auto& items = part<QTableView>("readerItems");
  items.selectRow(3);
  ASSERT_EQ(items.model()->index(3, 0).data().toString(), u"Guessed"_s);
  trigger("showFormulaAction");
  EXPECT_EQ(source(), u"@Log(a)"_s);
  EXPECT_EQ(told(formulas().currentIndex().row(), FormulaModel::ItemName), u"Guessed"_s);
  // One without a formula: the first of the note.
  items.selectRow(0);
  trigger("showFormulaAction");
  EXPECT_EQ(told(formulas().currentIndex().row(), FormulaModel::ItemName), u"$WindowTitle"_s);
  EXPECT_EQ(window->findChildren<QDialog*>(u"FormulaWindow"_s).size(), 1);
}

TEST_F(Formulas, OfTheCurrentViewAreSelectionAndColumns) {
  save(view());
  start();
  openMail();
  EXPECT_FALSE(part<QAction>("showViewFormulasAction").isEnabled());  // "All documents" is no view
  showView(u"Inbox"_s);
  EXPECT_TRUE(part<QAction>("showViewFormulasAction").isEnabled());
  trigger("showViewFormulasAction");
  ASSERT_EQ(formulas().model()->rowCount(), 2);
  EXPECT_EQ(heading(), u"View \"Inbox\", note ID 000008FA, has 2 formulas"_s);
  EXPECT_EQ(source(), u"SELECT Form = \"Memo\""_s);
  formulas().selectRow(1);
  EXPECT_EQ(told(1, FormulaModel::Place), u"column $0"_s);
  EXPECT_EQ(source(), u"@Left(Subject; 2)"_s);
}

TEST_F(Formulas, OfANoteThatHasNoneAreToldToBeNone) {
  const NoteId id = save(memo(u"Pumps"_s));
  start();
  openMail();
  ASSERT_TRUE(window->openDocument(id));
  trigger("showFormulaAction");
  EXPECT_EQ(heading(), u"Memo \"Pumps\", note ID 000008FA, has no formulas"_s);
  EXPECT_EQ(source(), QString());
  EXPECT_EQ(remark(), QString());
  EXPECT_FALSE(part<QPushButton>("formulaCopy").isEnabled());
}

TEST_F(Formulas, OfANoteThatHasGoneAreAFailureInTheStrip) {
  const NoteId id = save(form());
  start();
  openMail();
  goTo(id);
  mail->notes().remove(id);
  trigger("showFormulaAction");
  EXPECT_TRUE(error().contains(u"there is no note 000008FA any more"_s)) << error().toStdString();
  EXPECT_FALSE(dialog());
}

TEST_F(Formulas, AreOfferedWhereThereIsANote) {
  start();
  EXPECT_FALSE(part<QAction>("showFormulaAction").isEnabled());
  EXPECT_FALSE(part<QAction>("showViewFormulasAction").isEnabled());
  const NoteId id = save(form());
  openMail();
  EXPECT_FALSE(part<QAction>("showFormulaAction").isEnabled());
  goTo(id);
  EXPECT_TRUE(part<QAction>("showFormulaAction").isEnabled());
  window->closeDatabase();
  EXPECT_FALSE(part<QAction>("showFormulaAction").isEnabled());
}

// In the menu bar and in the menus of the lists, which show what the lists have as actions.
TEST_F(Formulas, AreOfferedByTheMenusOfTheLists) {
  start();
  auto* formula = &part<QAction>("showFormulaAction");
  auto* ofView = &part<QAction>("showViewFormulasAction");
  EXPECT_TRUE(part<QMenu>("documentMenu").actions().contains(formula));
  EXPECT_TRUE(part<QMenu>("viewMenu").actions().contains(ofView));
  for (const auto& [list, action] : {std::pair<const char*, QAction*>{"documentTable", formula},
                                     {"readerItems", formula},
                                     {"viewList", ofView}}) {
    EXPECT_EQ(part<QWidget>(list).contextMenuPolicy(), Qt::ActionsContextMenu) << list;
    EXPECT_TRUE(part<QWidget>(list).actions().contains(action)) << list;
  }
}

TEST_F(Formulas, StayWhileTheWindowGoesOn) {
  save(view());
  const NoteId id = save(form());
  start();
  openMail();
  goTo(id);
  trigger("showFormulaAction");
  const QPointer<QDialog> open = dialog();
  ASSERT_TRUE(open);
  EXPECT_FALSE(open->isModal());
  window->closeDatabase();
  EXPECT_TRUE(open && open->isVisible());
  // Enter in the table presses no button.
  QTest::keyClick(&formulas(), Qt::Key_Return);
  EXPECT_TRUE(open && open->isVisible());
  QTest::keyClick(open, Qt::Key_Escape);
  QTest::qWait(0);
  EXPECT_FALSE(open);
}

}  // namespace
}  // namespace lens
