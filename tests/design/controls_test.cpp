// How the controls of the browser read, and that all of them can be used.
#include "design/design_fixture.h"

namespace lens {
namespace {

class BrowserControls : public DesignTest {
 protected:
  QString tip(const char* name) { return control<QWidget>(name).toolTip(); }
};

TEST_F(BrowserControls, ReadAsTheyAlwaysDid) {
  start();
  EXPECT_EQ(text("lblDesigns"), "Design docs: (DblClick)");
  EXPECT_EQ(text("Label1"), "Open Notes DB in Notes Client then search it !");
  EXPECT_EQ(text("cmdGetProfiels"), "&Search for profiles");
  EXPECT_EQ(text("cmdDelete"), "Del marked documents");
  EXPECT_EQ(text("Command1"), "S&top");
  EXPECT_EQ(text("cmdStop"), "Sto&p");
  EXPECT_EQ(text("Label4"), "Decimal");
  EXPECT_EQ(tip("lfdIDNum"), "Id Number");
  EXPECT_EQ(tip("txtLfdNr"), "Id Number");
}

TEST_F(BrowserControls, CanAllBeUsed) {
  start();
  for (const char* name :
       {"lstDesigns", "idList", "cmdGetProfiels", "cmdDelete", "Command1", "cmdStop", "lfdIDNum", "txtLfdNr"})
    EXPECT_TRUE(control<QWidget>(name).isEnabled()) << name;
  EXPECT_FALSE(control<ListBox>("lstDesigns").isMultiSelect());
  EXPECT_TRUE(control<ListBox>("idList").isMultiSelect());
}

// A client with note collections has no need of the scan.
TEST_F(BrowserControls, OfTheScanAreHiddenUnlessTheClientIsOld) {
  start();
  for (const char* name : {"cmdStop", "lfdIDNum", "txtLfdNr", "Label4"}) EXPECT_FALSE(isShown(name)) << name;
  EXPECT_TRUE(isShown("Command1"));
}

TEST_F(BrowserControls, OfTheScanAreShownForAnOldClient) {
  notes().replies.insert(u"NOTESVERSION"_s, u"Release 4.6"_s);
  start();
  for (const char* name : {"cmdStop", "lfdIDNum", "txtLfdNr", "Label4"}) EXPECT_TRUE(isShown(name)) << name;
}

}  // namespace
}  // namespace lens
