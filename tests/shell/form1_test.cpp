// What the user must see in the main window: names, kinds, captions, tooltips and places.

#include "shell/form1.h"

#include <QLineEdit>
#include <QScrollBar>

#include "support/lens_fixture.h"

namespace lens {
namespace {

struct ControlRow {
  const char* name;
  const char* kind;
  const char* caption;
  const char* tooltip;
  QRect place;  // in the window at its design size
  int tabIndex;
};

const ControlRow kControls[] = {
    {"Label9", "lens::Label", "Open Notes UI doc then press Get here!", "", {8, 8, 336, 16}, 0},
    {"cmdGetDoc", "lens::Button", "Get UI &doc content", "", {8, 24, 224, 26}, 1},
    {"cmdFldtype", "lens::Button", "Field t&ype", "", {240, 24, 104, 26}, 2},
    {"NotesID", "lens::TextBox", "", "", {8, 56, 128, 26}, 3},
    {"cmdDECHEX", "lens::Button", "DEC NoteID", "", {144, 56, 104, 26}, 4},
    {"viewNotesID", "lens::Button", "Vie&w doc", "", {256, 56, 88, 26}, 5},
    {"Label13", "lens::Label", "UID:", "", {8, 93, 32, 16}, 6},
    {"NotesUID", "lens::TextBox", "", "", {40, 88, 304, 26}, 7},
    {"Label3", "lens::Label", "Collection documents: (DblClick)", "", {8, 128, 256, 16}, 8},
    {"lblCounter", "lens::Label", "", "", {272, 128, 72, 16}, 9},
    {"idList", "lens::ListBox", "", "", {8, 144, 336, 264}, 10},
    {"cmdidList",
     "lens::Button",
     "&View selected",
     "Displays fields content of selected design.",
     {8, 416, 120, 26},
     11},
    {"cmdDocCopy", "lens::Button", "Copy/&Move design doc", "", {136, 416, 168, 26}, 12},
    {"cmdRemColl", "lens::Button", "R", "Remove selected items from list", {312, 416, 32, 26}, 13},
    {"cmdCMRcoll",
     "lens::Button",
     "CMRR Coll.",
     "Copy Move Remove or replace all documents in a view",
     {8, 448, 96, 26},
     14},
    {"cmdDelete", "lens::Button", "Del marked documents", "", {176, 448, 168, 26}, 15},
    {"lblDesigns", "lens::Label", "Design docs: (DblClick)", "", {8, 493, 256, 16}, 16},
    {"Command1", "lens::Button", "S&top", "", {280, 488, 64, 26}, 17},
    {"lstDesigns", "lens::ListBox", "", "", {8, 520, 336, 168}, 18},
    {"Label1", "lens::Label", "Open Notes DB in Notes Client then search it !", "", {8, 696, 336, 16}, 19},
    {"cmdGetProfiels", "lens::Button", "&Search for profiles", "", {8, 712, 176, 26}, 20},
    {"cmdDbPicker", "lens::Button", "Database picker", "", {192, 712, 152, 26}, 21},
    {"Label5", "lens::Label", "Hexadecimal", "", {8, 749, 80, 16}, 22},
    {"lfdIDNum", "lens::TextBox", "", "Id Number", {88, 744, 72, 26}, 23},
    {"Label4", "lens::Label", "Decimal", "", {164, 749, 52, 16}, 24},
    {"txtLfdNr", "lens::TextBox", "", "Id Number", {216, 744, 72, 26}, 25},
    {"cmdStop", "lens::Button", "Sto&p", "", {296, 744, 48, 26}, 26},
    {"lastModified", "lens::Label", "", "", {360, 8, 384, 16}, 27},
    {"fldList", "lens::ListBox", "", "", {360, 24, 384, 488}, 28},
    {"cmdDump", "lens::Button", "&Dump fields", "", {360, 520, 96, 26}, 29},
    {"cmdFieldTypes",
     "lens::Button",
     "Field names by Type",
     "Select design forms and field type. Lists all designs fields by type selected.",
     {464, 520, 152, 26},
     30},
    {"cmdChkFields",
     "lens::Button",
     "Fields content",
     "Select design forms and field name. Lists all fields contents.",
     {624, 520, 120, 26},
     31},
    {"Label7", "lens::Label", "Field name:", "", {760, 8, 192, 16}, 32},
    {"txtFieldName", "lens::TextBox", "", "", {760, 24, 192, 26}, 33},
    {"cmbFieldType", "lens::ComboBox", "", "", {960, 24, 312, 26}, 34},
    {"chkSummary", "lens::CheckBox", "Summary", "", {760, 56, 88, 26}, 35},
    {"chkEncrypted", "lens::CheckBox", "Encrypted", "", {856, 56, 104, 26}, 36},
    {"chkSigned", "lens::CheckBox", "Signed", "", {968, 56, 80, 26}, 37},
    {"chkProtected", "lens::CheckBox", "Protected", "", {1056, 56, 104, 26}, 38},
    {"lblSize", "lens::Label", "", "", {1168, 61, 104, 16}, 39},
    {"cmdCollbyFormula",
     "lens::Button",
     "Collection by formula",
     "Type a view formula below and create a collection",
     {760, 88, 184, 26},
     40},
    {"cmdChkFormula", "lens::Button", "check @Function", "", {952, 88, 136, 26}, 41},
    {"cmdScroll", "lens::PictureButton", "", "", {1208, 88, 28, 26}, 42},
    {"cmdDelRT", "lens::PictureButton", "", "", {1244, 88, 28, 26}, 43},
    {"Label10", "lens::Label", "Content:", "", {760, 120, 64, 16}, 44},
    {"Label2",
     "lens::Label",
     "Contents of the first element: (click to see more)",
     "",
     {832, 120, 440, 16},
     45},
    {"txtFieldContent", "lens::RichTextBox", "", "", {760, 136, 512, 376}, 46},
    {"cmdAddField", "lens::Button", "&Add new field", "", {760, 520, 112, 26}, 47},
    {"cmdAddFieldInColl",
     "lens::Button",
     "Coll",
     "Adds the new specified field  in all collection documents.",
     {872, 520, 48, 26},
     48},
    {"cmdOverwrite",
     "lens::Button",
     "&Overwrite doc",
     "Overwrites the current field by the new 'Content' text. For RT field make Search and Replace.",
     {928, 520, 112, 26},
     49},
    {"cmdWriteDocsInColl",
     "lens::Button",
     "Coll",
     "Overwrites the current field by the new 'Content' text in all collection documents. For RT field make "
     "Search and Replace.",
     {1040, 520, 48, 26},
     50},
    {"cmdDelField", "lens::Button", "De&lete field", "", {1120, 520, 104, 26}, 51},
    {"cmdDelFieldInCol",
     "lens::Button",
     "Coll",
     "Deletes the specified field  in all collection documents.",
     {1224, 520, 48, 26},
     52},
    {"Frame1", "lens::Frame", "Search/replace text", "", {360, 568, 384, 152}, 53},
    {"txtSearch", "lens::TextBox", "", "", {368, 584, 280, 26}, 54},
    {"cmdSearch", "lens::Button", "&Search", "Searches the next field.", {656, 584, 80, 26}, 55},
    {"txtReplace", "lens::TextBox", "", "", {368, 616, 280, 26}, 56},
    {"cmdReplace",
     "lens::Button",
     "&Replace",
     "Replaces the searched text in the Content box only. To replace the field click the 'Overwrite doc'  "
     "button.",
     {656, 616, 80, 26},
     57},
    {"chkCase", "lens::CheckBox", "Case sensitive", "", {368, 648, 136, 26}, 58},
    {"chkProfile", "lens::CheckBox", "In Collection list", "", {512, 648, 168, 26}, 59},
    {"cmdSearchReplaceAll",
     "lens::Button",
     "Search re&place all fields",
     "Replaces all occurences of 'Search text' by 'Replace text' in all current document fields.",
     {368, 680, 208, 26},
     60},
    {"cmdReplAllFieldsInColl",
     "lens::Button",
     "Coll",
     "Replaces all occurences of 'Search for' by 'Replace' in all collection documents fields.",
     {576, 680, 48, 26},
     61},
    {"cmdFuncList", "lens::Button", "@", "Colllection of @ functions", {360, 744, 40, 26}, 62},
    {"cmdLS", "lens::Button", "LS", "Colllection of Lotus-Script functions", {408, 744, 40, 26}, 63},
    {"cmdJava", "lens::Button", "J", "Colllection of Java functions", {456, 744, 40, 26}, 64},
    {"cmdHLP", "lens::Button", "FT", "Fulltext Search of search input", {504, 744, 40, 26}, 65},
    {"lblFile", "lens::Label", "File/s in this directory", "", {760, 568, 256, 16}, 66},
    {"Drive1", "lens::DriveList", "", "", {760, 584, 112, 26}, 67},
    {"Dir1", "lens::DirList", "", "", {760, 616, 112, 88}, 68},
    {"File1", "lens::FileList", "", "", {880, 584, 136, 120}, 69},
    {"cmdExtractAtt", "lens::Button", "Extract attachments", "", {760, 712, 152, 26}, 70},
    {"cmdRemoveFile", "lens::Button", "Del file", "", {944, 712, 72, 26}, 71},
    {"cmdLoadAtt", "lens::Button", "Load att. into RT field", "", {760, 744, 184, 26}, 72},
    {"lblServer", "lens::Label", "Server:", "", {1032, 568, 240, 16}, 73},
    {"lstServerList", "lens::ComboBox", "", "", {1032, 584, 240, 26}, 74},
    {"txtRemoteCommand", "lens::TextBox", "", "", {1032, 616, 240, 26}, 75},
    {"cmdRemCon", "lens::Button", "Send &Console cmd", "", {1032, 648, 144, 26}, 76},
    {"cmdDataDir", "lens::Button", "Data Dir", "", {1032, 680, 72, 26}, 77},
    {"cmdTempDir", "lens::Button", "Temp Dir", "", {1112, 680, 72, 26}, 78},
    {"cmdIni", "lens::Button", "Notes.ini", "", {1192, 680, 80, 26}, 79},
    {"Picture1", "lens::Label", "", "", {1032, 716, 18, 18}, 80},
    {"lblVer", "lens::Label", "", "", {1056, 717, 80, 16}, 81},
    {"Label6", "lens::Label", "About", "", {1144, 717, 48, 16}, 82},
    {"lblTime", "lens::Label", "", "", {1200, 717, 72, 16}, 83},
    {"cmdKillNotes", "lens::Button", "&Kill Notes", "", {1032, 744, 96, 26}, 84},
    {"cmdEnd", "lens::Button", "&End", "", {1208, 744, 64, 26}, 85},
    {"sbrMain", "lens::StatusBar", "", "", {0, 778, 1280, 22}, 86},
};

QString captionOf(const QWidget& control) {
  for (const char* property : {"text", "title"})
    if (control.property(property).isValid() && !qobject_cast<const QLineEdit*>(&control))
      return control.property(property).toString();
  return {};
}

TEST(Form1Controls, HaveTheirNamesKindsCaptionsAndTooltips) {
  const Form1 form;
  for (const ControlRow& row : kControls) {
    const auto* control = form.findChild<QWidget*>(QString::fromLatin1(row.name));
    ASSERT_TRUE(control) << row.name;
    EXPECT_STREQ(control->metaObject()->className(), row.kind) << row.name;
    EXPECT_EQ(captionOf(*control), QString::fromLatin1(row.caption)) << row.name;
    EXPECT_EQ(control->toolTip(), QString::fromLatin1(row.tooltip)) << row.name;
    EXPECT_EQ(QRect(control->mapTo(&form, QPoint()), control->size()), row.place) << row.name;
    EXPECT_EQ(control->property("tabIndex").toInt(), row.tabIndex) << row.name;
  }
}

TEST(Form1Controls, AreAllInTheTable) {
  const Form1 form;
  int recorded = 0;
  for (const QWidget* child : form.findChildren<QWidget*>())
    if (child->property("tabIndex").isValid()) ++recorded;
  EXPECT_EQ(recorded, int(std::size(kControls)));
}

TEST(Form1Controls, StartEmptyWhereTheProgramFillsThem) {
  const Form1 form;
  EXPECT_EQ(form.windowTitle(), "Profiles UI's and Designs");
  EXPECT_EQ(form.idList->listCount(), 0);
  EXPECT_EQ(form.fldList->listCount(), 0);
  EXPECT_EQ(form.txtFieldContent->text(), "");
  EXPECT_TRUE(form.idList->isMultiSelect());
  EXPECT_FALSE(form.fldList->isMultiSelect());
}

TEST(Form1Controls, ShowTheLinkAsOne) {
  const Form1 form;
  EXPECT_TRUE(form.Label6->font().underline());
  EXPECT_EQ(form.Label6->palette().color(QPalette::WindowText), QColor(0x1F5F9C));
  EXPECT_FALSE(form.lblVer->font().underline());
}

TEST(Form1Menu, HasTheThreeEntries) {
  const Form1 form;
  QStringList entries;
  for (const QAction* action : form.mnuBar->actions()) entries += action->text();
  EXPECT_EQ(form.mnuBar->title(), "Options");
  EXPECT_EQ(entries, QStringList({u"Show"_s, u"Hide"_s, u"Exit"_s}));
}

TEST(Form1Buttons, AreNeverDefaultSoThatEnterPressesNothing) {
  const Form1 form;
  for (const QPushButton* button : form.findChildren<QPushButton*>()) {
    EXPECT_FALSE(button->isDefault()) << button->objectName().toStdString();
    EXPECT_FALSE(button->autoDefault()) << button->objectName().toStdString();
  }
}

TEST(Form1Lists, ScrollSidewaysToTwiceTheirWidth) {
  Form1 form;
  form.fldList->setHorizontalExtent(2 * form.fldList->width());
  form.fldList->addItem(QString(500, u'x'));
  form.show();
  const QScrollBar* bar = form.fldList->horizontalScrollBar();
  EXPECT_EQ(bar->maximum() + form.fldList->viewport()->width(), 2 * form.fldList->width());
}

TEST(StatusBarPanels, AreThreeOfTheContentBoxAndOneOfTheSource) {
  const Form1 form;
  for (const char16_t* key : {u"MainText", u"FontInfo", u"Overwrite", u"Source"})
    EXPECT_TRUE(form.sbrMain->hasPanel(QString::fromUtf16(key)));
}

}  // namespace
}  // namespace lens
