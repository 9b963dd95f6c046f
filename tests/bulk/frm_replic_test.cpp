// What the user must see in the bulk tool's window: names, kinds, captions, tooltips and places.

#include "bulk/frm_replic.h"

#include <gtest/gtest.h>

#include <QTest>

#include "controls/fonts.h"
#include "notes/literals.h"
#include "support/printers.h"

namespace lens {
namespace {

struct ReplicRow {
  const char* name;
  const char* kind;
  const char* text;  // caption, or what a box holds at first
  const char* tooltip;
  QRect place;  // in the window at its design size
  int tabIndex;
};

const ReplicRow kReplicControls[] = {
    {"Frame4", "lens::Frame", "1. Select source Server/Database/View ", "", {8, 8, 1264, 416}, 0},
    {"lblServer", "lens::Label", "Source Server list", "", {16, 32, 240, 16}, 1},
    {"lstServer", "lens::ComboBox", "Local", "", {16, 48, 256, 26}, 2},
    {"Label12", "lens::Label", "DBs search mask:", "", {288, 53, 120, 16}, 3},
    {"txtMaskSorce", "lens::TextBox", "", "", {416, 48, 128, 26}, 4},
    {"cmdExpand", "lens::Button", "?", "", {552, 48, 32, 26}, 5},
    {"Label1", "lens::Label", "Click to expand", "", {592, 53, 120, 16}, 6},
    {"lblDB", "lens::Label", "Select source database", "", {16, 88, 256, 16}, 7},
    {"lstDBNames", "lens::ListBox", "", "", {16, 104, 256, 280}, 8},
    {"Label4", "lens::Label", "Select view", "", {288, 88, 256, 16}, 9},
    {"lstViewNames", "lens::ListBox", "", "", {288, 104, 256, 280}, 10},
    {"Label23", "lens::Label", "Agents (DblClick to RUN)", "", {560, 88, 256, 16}, 11},
    {"lstAgentNames", "lens::ListBox", "", "", {560, 104, 256, 280}, 12},
    {"lblRunAgent",
     "lens::Label",
     "The Notes program directory must be in the application path.",
     "",
     {288, 394, 528, 16},
     13},
    {"Label21", "lens::Label", "Search for Key/Text/docs in View:", "", {832, 32, 272, 16}, 14},
    {"txtTemplale", "lens::TextBox", "", "", {832, 48, 336, 26}, 15},
    {"cmdClearMe", "lens::PictureButton", "", "", {1176, 48, 28, 26}, 16},
    {"lblClr", "lens::Label", "Clear", "", {1212, 53, 52, 16}, 17},
    {"cmdSearch",
     "lens::Button",
     "Search the 'Text' in full indexed selected Databases.",
     "",
     {832, 80, 432, 26},
     18},
    {"cmdSearchAZ",
     "lens::Button",
     "Search key in selected DBs and View",
     "Select DBs and view, the key to search is in the entries of the first (sorted) column. The matched DBs "
     "stays selected.",
     {832, 112, 432, 26},
     19},
    {"cmdSearchInViews",
     "lens::Button",
     "Number of documents in selected DBs for the searched view",
     "",
     {832, 144, 432, 26},
     20},
    {"cmdPrint", "lens::Button", "Dump list into:", "", {832, 200, 136, 26}, 21},
    {"txtListToPrint", "lens::TextBox", "c:\\Dumplist.txt", "", {976, 200, 288, 26}, 22},
    {"Opt0", "lens::OptionButton", "DBs", "", {976, 232, 64, 26}, 23},
    {"Opt1", "lens::OptionButton", "Views", "", {1056, 232, 80, 26}, 24},
    {"Opt2", "lens::OptionButton", "Agents", "", {1152, 232, 88, 26}, 25},
    {"cmdChkAttachments",
     "lens::Button",
     "Check attachments in selected DB/View",
     "Attachment wil be extracted to Dump list directory specified",
     {832, 264, 432, 26},
     26},
    {"cmdDelDocs", "lens::Button", "Delete documents from selected view", "", {976, 358, 288, 26}, 27},
    {"Frame3",
     "lens::Frame",
     "2. Replacing fields  (During the copy or move process)",
     "",
     {8, 432, 664, 380},
     28},
    {"Label14", "lens::Label", "Search for (Case sensitiv):", "", {16, 456, 320, 16}, 29},
    {"txtFind", "lens::TextBox", "", "", {16, 472, 320, 26}, 30},
    {"Label15", "lens::Label", "Replace by:", "", {344, 456, 320, 16}, 31},
    {"txtReplace", "lens::TextBox", "", "", {344, 472, 320, 26}, 32},
    {"chkFields", "lens::CheckBox", "With replacing fields content", "", {16, 504, 256, 26}, 33},
    {"Label19",
     "lens::Label",
     "Number of document to find fieds with the search content",
     "",
     {16, 541, 424, 16},
     34},
    {"txtNumDocs", "lens::TextBox", "250", "", {448, 536, 72, 26}, 35},
    {"Label16", "lens::Label", "Field names and content (mark to replace)", "", {16, 573, 320, 16}, 36},
    {"cmdClearFldList", "lens::PictureButton", "", "", {424, 568, 28, 26}, 37},
    {"Label17", "lens::Label", "clear list", "", {460, 573, 80, 16}, 38},
    {"Command2", "lens::PictureButton", "", "", {548, 568, 28, 26}, 39},
    {"Label18", "lens::Label", "select all", "", {584, 573, 80, 16}, 40},
    {"fldList", "lens::ListBox", "", "", {16, 600, 648, 168}, 41},
    {"cmdReplace",
     "lens::Button",
     "&Replace in Source (Replacing fields content in selected DB/View). Set the check button",
     "",
     {16, 776, 648, 26},
     42},
    {"Frame1",
     "lens::Frame",
     "3.Target Database and Server. Were the documents are moved or copied in.",
     "",
     {680, 432, 592, 380},
     43},
    {"Label3", "lens::Label", "Target Server list", "", {688, 456, 288, 16}, 44},
    {"lstDesignServer", "lens::ComboBox", "Local", "", {688, 472, 288, 26}, 45},
    {"Label11", "lens::Label", "DBs search mask:", "", {688, 509, 120, 16}, 46},
    {"txtMaskDest", "lens::TextBox", "", "", {816, 504, 160, 26}, 47},
    {"cmdExpand2", "lens::Button", "?", "", {688, 536, 32, 26}, 48},
    {"Label7", "lens::Label", "Click to expand", "", {728, 541, 120, 16}, 49},
    {"lblDB2", "lens::Label", "Select target DB", "", {992, 456, 272, 16}, 50},
    {"lstDBNamesDest", "lens::ListBox", "", "", {992, 472, 272, 264}, 51},
    {"Label5", "lens::Label", "Selected or documents in the view:", "", {688, 600, 288, 16}, 52},
    {"txtDocsSelected", "lens::TextBox", "", "", {688, 616, 112, 26}, 53},
    {"Label8", "lens::Label", "Processed documents/items:", "", {688, 656, 288, 16}, 54},
    {"txtProc", "lens::TextBox", "", "", {688, 672, 112, 26}, 55},
    {"cmdCopy", "lens::Button", "&Copy (Copy documents into target DB)", "", {688, 744, 288, 26}, 56},
    {"cmdMoveDocs", "lens::Button", "&Move (Moves documents into target DB)", "", {688, 776, 288, 26}, 57},
    {"cmdStop", "lens::Button", "&Stop", "", {992, 744, 96, 26}, 58},
    {"cmdLoadLast", "lens::Button", "&Load last settings", "", {1096, 744, 168, 26}, 59},
    {"cmdEnd", "lens::Button", "&End and save settings", "", {992, 776, 272, 26}, 60},
};

QString shownText(const QWidget& control) {
  if (auto* box = qobject_cast<const ComboBox*>(&control)) return box->text();
  for (const char* property : {"text", "title"})
    if (control.property(property).isValid()) return control.property(property).toString();
  return {};
}

// The places of all controls by their tab index, then the window's own.
QVector<QRect> placesIn(const FrmReplic& window) {
  QVector<QRect> places;
  for (const ReplicRow& row : kReplicControls)
    places += window.findChild<QWidget*>(QString::fromLatin1(row.name))->geometry();
  return places << QRect(QPoint(), window.size());
}

TEST(ReplicControls, HaveTheirNamesKindsTextsAndPlaces) {
  const FrmReplic window;
  EXPECT_EQ(window.windowTitle(), "Copy / Move / Remove / Replace fields content in Domino Documents ");
  EXPECT_EQ(window.size(), QSize(1280, 820));
  for (const ReplicRow& row : kReplicControls) {
    const auto* control = window.findChild<QWidget*>(QString::fromLatin1(row.name));
    ASSERT_TRUE(control) << row.name;
    EXPECT_STREQ(control->metaObject()->className(), row.kind) << row.name;
    EXPECT_EQ(shownText(*control), QString::fromLatin1(row.text)) << row.name;
    EXPECT_EQ(control->toolTip(), QString::fromLatin1(row.tooltip)) << row.name;
    EXPECT_EQ(QRect(control->mapTo(&window, QPoint()), control->size()), row.place) << row.name;
    EXPECT_EQ(control->property("tabIndex").toInt(), row.tabIndex) << row.name;
  }
}

TEST(ReplicControls, AreAllInTheTable) {
  const FrmReplic window;
  int recorded = 0;
  for (const QWidget* child : window.findChildren<QWidget*>())
    if (child->property("tabIndex").isValid()) ++recorded;
  EXPECT_EQ(recorded, int(std::size(kReplicControls)));
}

TEST(ReplicControls, HaveTheColoursOfTheWindow) {
  const FrmReplic window;
  const QColor ground(220, 231, 237), box(224, 224, 224);
  for (const QWidget* control :
       {static_cast<const QWidget*>(window.Frame4), static_cast<const QWidget*>(&window),
        static_cast<const QWidget*>(window.Label21)})
    EXPECT_EQ(control->palette().color(QPalette::Window), ground) << control->objectName().toStdString();
  for (const QWidget* control :
       {static_cast<const QWidget*>(window.txtFind), static_cast<const QWidget*>(window.lstDBNames),
        static_cast<const QWidget*>(window.fldList), static_cast<const QWidget*>(window.lstServer)})
    EXPECT_EQ(control->palette().color(QPalette::Base), box) << control->objectName().toStdString();
  for (const QWidget* mark :
       {static_cast<const QWidget*>(window.chkFields), static_cast<const QWidget*>(window.Opt[1])})
    EXPECT_EQ(mark->palette().color(QPalette::Base), QColor(Qt::white)) << "a mark that is not set is seen";
  EXPECT_EQ(window.lblRunAgent->palette().color(QPalette::WindowText), QColor(0xC0, 0, 0));
}

TEST(ReplicControls, AreAllInTheMonospaceFont) {
  const FrmReplic window;
  for (const ReplicRow& row : kReplicControls)
    EXPECT_EQ(window.findChild<QWidget*>(QString::fromLatin1(row.name))->font().families(),
              QStringList(monospaceFamily()))
        << row.name;
}

TEST(ReplicControls, StartAsTheUserFindsThem) {
  const FrmReplic window;
  for (const ListBox* list : window.findChildren<ListBox*>()) {
    EXPECT_TRUE(list->isSorted()) << list->objectName().toStdString();
    EXPECT_TRUE(list->hasSidewaysBar()) << list->objectName().toStdString();
    EXPECT_EQ(list->isMultiSelect(), list == window.lstDBNames) << list->objectName().toStdString();
    EXPECT_EQ(list->isChecked(), list == window.fldList) << list->objectName().toStdString();
  }
  EXPECT_EQ(window.findChildren<ListBox*>().size(), 5);
  EXPECT_FALSE(window.txtDocsSelected->isEnabled());
  EXPECT_FALSE(window.txtProc->isEnabled());
  EXPECT_TRUE(window.lblRunAgent->isHidden());
  EXPECT_EQ(window.chkFields->value(), 0);
  EXPECT_TRUE(window.Opt[0]->value());
  EXPECT_FALSE(window.Opt[1]->value() || window.Opt[2]->value());
  EXPECT_TRUE(window.lstServer->isEditable() && window.lstDesignServer->isEditable());
}

TEST(ReplicControls, AreReachedByTabInTheirOrder) {
  FrmReplic window;
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  window.lstServer->setFocus();
  QStringList order;
  for (const QWidget* control = window.lstServer; !order.contains(control->objectName());
       control = window.focusWidget()) {
    order += control->objectName();
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  }
  QStringList expected;
  for (const ReplicRow& row : kReplicControls) {
    const auto* control = window.findChild<QWidget*>(QString::fromLatin1(row.name));
    // One option stands for the three; arrow keys lead to the others.
    const bool isOther = control == window.Opt[1] || control == window.Opt[2];
    if ((control->focusPolicy() & Qt::TabFocus) && control->isEnabled() && !isOther)
      expected += control->objectName();
  }
  EXPECT_EQ(order, expected);
  EXPECT_GT(order.size(), 30);
}

TEST(ReplicButtons, AreNeverDefaultAndShareNoAccessKey) {
  const FrmReplic window;
  QStringList keys;
  for (const QPushButton* button : window.findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->isDefault() || button->autoDefault()) << button->objectName().toStdString();
    const QString key = button->shortcut().toString();
    EXPECT_FALSE(keys.contains(key)) << key.toStdString();
    if (!key.isEmpty()) keys += key;
  }
  keys.sort();
  EXPECT_EQ(keys, QStringList({u"Alt+C"_s, u"Alt+E"_s, u"Alt+L"_s, u"Alt+M"_s, u"Alt+R"_s, u"Alt+S"_s}));
}

TEST(ReplicButtons, WithAPictureHaveAName) {
  const FrmReplic window;
  EXPECT_EQ(window.cmdClearMe->accessibleName(), "Clear");
  EXPECT_EQ(window.cmdClearFldList->accessibleName(), "clear list");
  EXPECT_EQ(window.Command2->accessibleName(), "select all");
  for (const PictureButton* button : window.findChildren<PictureButton*>())
    EXPECT_FALSE(button->icon().isNull()) << button->objectName().toStdString();
}

TEST(FrmReplicWindow, StaysOpenOnEsc) {
  FrmReplic window;
  window.show();
  for (QWidget* control : {static_cast<QWidget*>(window.txtFind), static_cast<QWidget*>(window.lstDBNames),
                           static_cast<QWidget*>(window.cmdStop)}) {
    control->setFocus();
    QTest::keyClick(control, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible()) << control->objectName().toStdString();
  }
}

TEST(FrmReplicWindow, GoesBackToItsDesignFromAnyState) {
  FrmReplic window;
  const QVector<QRect> design = placesIn(window);
  for (TextBox* box : window.findChildren<TextBox*>()) box->setText(u"other"_s);
  for (Label* label : window.findChildren<Label*>()) label->setText(u"other"_s);
  for (ListBox* list : window.findChildren<ListBox*>()) {
    list->addItem(u"row"_s);
    list->setSelected(0, true);
    list->setRowHeight(30);
  }
  for (ComboBox* combo : window.findChildren<ComboBox*>()) {
    combo->addItem(u"row"_s);
    combo->setText(u"other"_s);
  }
  window.chkFields->setValue(1);
  window.Opt[2]->setValue(true);
  window.lblRunAgent->show();
  window.cmdExpand->hide();
  window.cmdCopy->setEnabled(false);
  window.txtProc->setEnabled(true);
  window.cmdEnd->setFont(QFont(u"Helvetica"_s, 30));
  for (const ReplicRow& row : kReplicControls)
    window.findChild<QWidget*>(QString::fromLatin1(row.name))->move(1, 1);
  window.resize(1500, 1000);

  window.restoreDesign();
  EXPECT_EQ(placesIn(window), design);
  const FrmReplic fresh;
  for (const ReplicRow& row : kReplicControls) {
    const auto* control = window.findChild<QWidget*>(QString::fromLatin1(row.name));
    const auto* model = fresh.findChild<QWidget*>(QString::fromLatin1(row.name));
    EXPECT_EQ(shownText(*control), QString::fromLatin1(row.text)) << row.name;
    EXPECT_EQ(control->isHidden(), model->isHidden()) << row.name;
    EXPECT_EQ(control->isEnabled(), model->isEnabled()) << row.name;
    EXPECT_EQ(control->font(), model->font()) << row.name;
    if (auto* list = qobject_cast<const ListBox*>(control)) {
      EXPECT_EQ(list->listCount(), 0) << row.name;
      EXPECT_EQ(list->rowHeight(), 16) << row.name;
    }
    if (auto* combo = qobject_cast<const ComboBox*>(control)) {
      EXPECT_EQ(combo->listCount(), 0) << row.name;
    }
  }
  EXPECT_EQ(window.chkFields->value(), 0);
  EXPECT_TRUE(window.Opt[0]->value());
  EXPECT_FALSE(window.Opt[2]->value());
}

}  // namespace
}  // namespace lens
