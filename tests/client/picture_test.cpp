#include "client/client_fixture.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"

namespace lens {

// The window as a user sees it; CLIENT_PICTURE names a file to keep it in.
TEST_F(Client, FitsItsPanesIntoTheWindow) {
  for (const QString& subject :
       {u"Contract 2024-117, second draft"_s, u"Weekly report"_s, u"Travel request"_s,
        u"Price list of this quarter"_s, u"Pump station: delivery dates"_s})
    save(memo(subject));
  workspace->createDatabase({}, u"sales/orders.nsf"_s, {});
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, 0, textValue(u"Inbox"));
  save(view);
  start();
  openMail();
  table().selectRow(1);
  const QString file = qEnvironmentVariable("CLIENT_PICTURE");
  if (!file.isEmpty()) window->grab().save(file);
  EXPECT_GT(table().width(), 400);
  EXPECT_GT(part<QListWidget>("viewList").width(), 120);
  ASSERT_TRUE(window->openDocument(mail->notes().list(noteclass::Document).first().id));
  if (!file.isEmpty()) window->grab().save(file + u".reader.png"_s);
  EXPECT_GT(part<QTableView>("readerItems").height(), 100);
  EXPECT_GT(part<QPlainTextEdit>("readerContent").height(), 100);
}

// The same of the window on the formulas of a note.
TEST_F(Client, FitsTheFormulasOfANote) {
  const formula::MachineEnvironment machine;
  const auto compiled = [&](QStringView source) {
    return rawValue(itemtype::Formula, formula::writeCompiled(source, machine).bytes);
  };
  Note form;
  form.header.noteClass = noteclass::Form;
  form.add(u"$TITLE"_s, 0, textValue(u"Purchase order|Order"));
  form.add(
      u"$WindowTitle"_s, 0,
      compiled(
          u"REM {the number, once there is one};\n@If(@IsNewDoc;\n\t\"New purchase order\";\n\t\"Purchase "
          "order \" + Number + \" of \" + @Name([CN]; Buyer))"));
  form.add(u"$QueryOpen"_s, 0, compiled(u"@Round(@Max(Price; 0))"));
  form.add(u"$HTMLHead"_s, 0, sourceFormulaValue(u"@Sqrt(Price)"));
  save(form);
  start();
  openMail();
  showView(u"Design notes"_s);
  trigger("showFormulaAction");
  auto* shown = window->findChild<QDialog*>(u"FormulaWindow"_s);
  ASSERT_TRUE(shown);
  const QString file = qEnvironmentVariable("CLIENT_PICTURE");
  if (!file.isEmpty()) shown->grab().save(file + u".formulas.png"_s);
  EXPECT_GT(part<QTableView>("formulaTable").height(), 100);
  EXPECT_GT(part<QPlainTextEdit>("formulaSource").height(), 150);
}

}  // namespace lens
