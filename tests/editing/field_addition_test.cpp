#include "editing/editing_fixture.h"

namespace lens {
namespace {

class FieldAdditionTest : public EditingTest {
 protected:
  // Types name, type and content into the window and presses the button.
  void add(const QString& name, const QString& type, const QString& content) {
    setText("txtFieldName", name);
    setText("cmbFieldType", type);
    setText("txtFieldContent", content);
    click("cmdAddField");
  }
  static ShownBox reloadBox(int number) {
    return {standardErrorText(number) + u" (please Reload the document again)", box::Information,
            u"Error in AddField"_s};
  }
};

TEST_F(FieldAdditionTest, ATextItemTakesALineForEachValue) {
  show(memo());
  add(u"City"_s, kTextType, u"Bern\r\nGenf"_s);
  EXPECT_EQ(values(u"City"_s), QStringList({u"Bern"_s, u"Genf"_s}));
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"City:"_s));
}

TEST_F(FieldAdditionTest, ANumberItemTakesOneWholeNumber) {
  show(memo());
  add(u"Count"_s, typeSentence(768), u"12"_s);
  EXPECT_EQ(values(u"Count"_s), QStringList(u"12"_s));
  add(u"Rounded"_s, typeSentence(768), u"2.5"_s);
  EXPECT_EQ(values(u"Rounded"_s), QStringList(u"2"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldAdditionTest, LettersAndAnEmptyBoxAreNoNumber) {
  show(memo());
  add(u"Count"_s, typeSentence(768), u"twelve"_s);
  add(u"Count"_s, typeSentence(768), QString());
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(err::TypeMismatch), reloadBox(err::TypeMismatch)}));
  EXPECT_FALSE(stored().has(u"Count"));
  EXPECT_EQ(saves(), 0);
}

TEST_F(FieldAdditionTest, ADateItemTakesADateFromEachLine) {
  show(memo());
  add(u"Due"_s, typeSentence(1024), u"11.03.2024\r\nsoon\r\n12.03.2024 14:05:09"_s);
  EXPECT_EQ(values(u"Due"_s), QStringList({u"11.03.2024"_s, u"12.03.2024 14:05:09"_s}));
}

TEST_F(FieldAdditionTest, ARichTextItemIsMadeEmptyWhateverTheBoxHolds) {
  show(memo());
  add(u"Body"_s, typeSentence(1), u"text that is not used"_s);
  EXPECT_EQ(stored().find(u"Body")->type(), itemtype::RichText);
  EXPECT_EQ(bodyText(stored()), QString());
}

TEST_F(FieldAdditionTest, OnlyReadersAreMarkedAsWhatTheyAre) {
  show(memo());
  add(u"N"_s, typeSentence(1074), u"CN=A"_s);
  add(u"R"_s, typeSentence(1075), u"CN=A"_s);
  add(u"W"_s, typeSentence(1076), u"CN=A"_s);
  const Note note = stored();
  EXPECT_EQ(objectModelType(*note.find(u"N")), 1280);
  EXPECT_EQ(objectModelType(*note.find(u"R")), 1075);
  EXPECT_EQ(objectModelType(*note.find(u"W")), 1280);
}

TEST_F(FieldAdditionTest, TheFlagBoxesAreWrittenToTheItem) {
  show(memo());
  setText("txtFieldContent", u""_s);
  for (const char* name : {"chkEncrypted", "chkSigned", "chkProtected"}) control<CheckBox>(name).setValue(1);
  control<CheckBox>("chkSummary").setValue(0);
  add(u"City"_s, kTextType, u"Bern"_s);
  const quint16 flags = stored().find(u"City")->flags;
  EXPECT_EQ(flags & (itemflag::Seal | itemflag::Sign | itemflag::Protected),
            itemflag::Seal | itemflag::Sign | itemflag::Protected);
  EXPECT_EQ(flags & itemflag::Summary, 0);
}

TEST_F(FieldAdditionTest, TheSizeIsThatBeforeTheSave) {
  show(memo());
  const QString label = u"lblSize"_s;
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  add(u"City"_s, kTextType, u"Bern"_s);
  EXPECT_EQ(text("lblSize"), "0 bytes");
}

TEST_F(FieldAdditionTest, AnAttachmentNameLeavesTheSizeAsItWas) {
  show(memo());
  selectRow("fldList", u"Subject:"_s);
  const QString before = text("lblSize");
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  add(u"$FILE"_s, kTextType, u"x"_s);
  EXPECT_EQ(text("lblSize"), before);
}

TEST_F(FieldAdditionTest, ASecondItemOfTheNameIsRefused) {
  show(memo());
  add(u"City"_s, kTextType, u"Bern"_s);
  add(u"City"_s, kTextType, u"Genf"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Item name allready exits!"_s, box::Plain, u"Add field"_s}}));
  EXPECT_EQ(values(u"City"_s), QStringList(u"Bern"_s));
}

TEST_F(FieldAdditionTest, AnUnknownTypeIsToldAndThenFails) {
  show(memo());
  add(u"City"_s, u"X (99)"_s, u"Bern"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>(
                            {{u"Not implemented for the field type !!"_s, box::Exclamation, u"Doc Viewer"_s},
                             reloadBox(err::ObjectNotSet)}));
  EXPECT_EQ(saves(), 0);
}

TEST_F(FieldAdditionTest, ATypeWithoutParenthesesFails) {
  show(memo());
  add(u"City"_s, u"text"_s, u"Bern"_s);
  add(u"City"_s, u"(70000)"_s, u"Bern"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(err::InvalidCall), reloadBox(err::Overflow)}));
  add(u"City"_s, u"1280)"_s, u"Bern"_s);
  EXPECT_EQ(values(u"City"_s), QStringList(u"Bern"_s));
}

TEST_F(FieldAdditionTest, AnEmptyNameIsTriedAndRefused) {
  show(memo());
  add(QString(), kTextType, u"Bern"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in AddField"_s);
  EXPECT_EQ(saves(), 0);
}

TEST_F(FieldAdditionTest, AnEmptyTextIsRefusedByTheModel) {
  show(memo());
  add(u"City"_s, kTextType, QString());
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_FALSE(stored().has(u"City"));
}

TEST_F(FieldAdditionTest, WithoutADocumentNothingHappens) {
  show(memo());
  state().gDoc.release();
  add(u"City"_s, kTextType, u"Bern"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_FALSE(stored().has(u"City"));
}

TEST_F(FieldAdditionTest, AfterADateLineNoFailureIsShown) {
  show(memo());
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  add(u"Due"_s, typeSentence(1024), u"11.03.2024"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_FALSE(stored().has(u"Due"));
}

TEST_F(FieldAdditionTest, ALineEndTooFarAwayShowsOneBoxForTextAndNoneForDates) {
  show(memo());
  const QString far = QString(33'000, u'x') + u"\r\nx";
  add(u"City"_s, kTextType, far);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({reloadBox(err::Overflow)}));
  host.boxes.clear();
  add(u"Due"_s, typeSentence(1024), far);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldAdditionTest, Number4000IsAFailureLikeAnyOther) {
  show(memo());
  notes().failing.insert(u"SAVE"_s, RuntimeError(4000));
  add(u"City"_s, kTextType, u"Bern"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Error in AddField"_s);
}

TEST_F(FieldAdditionTest, TheOpenDocumentComesBackWhateverWasShown) {
  show(memo());
  Note other = memo(u"Other"_s);
  openDocument(save(other));
  state().gDocKind = u"PROFILE"_s;
  add(u"City"_s, kTextType, u"Bern"_s);
  EXPECT_EQ(state().gDocKind, u"UIDOC"_s);
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"Other"_s));
}

}  // namespace
}  // namespace lens
