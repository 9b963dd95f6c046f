// Which fields of a type the listed forms have, and what one field holds in the listed notes.
#include <sqlite3.h>

#include "design/tools_fixture.h"
#include "embedded/format/timedate.h"

namespace lens {
namespace {

QString records(const QStringList& texts) {
  QString all;
  for (const QString& text : texts) all += text + u"\r\r\n";
  return all;
}

class FieldReports : public ToolsTest {
 protected:
  FieldReports() {
    person = designForm(u"Person|per"_s, {{u"LastName"_s, textValue(u"x")},
                                          {u"Age"_s, numberValue(0)},
                                          {u"FirstName"_s, textValue(u"x")},
                                          {u"Owner"_s, textValue(u"x"), itemflag::Authors}});
    order = designForm(u"Order"_s, {{u"Total"_s, numberValue(0)}, {u"Note"_s, textValue(u"x")}});
    startOnDatabase();
    fill("idList", {row(u"Person|per"_s, person), row(u"Order"_s, order)});
  }
  QString typed(const QString& type) {
    setText("cmbFieldType", type);
    press("cmdFieldTypes");
    return content();
  }
  QString contentsOf(const QString& name) {
    setText("txtFieldName", name);
    press("cmdChkFields");
    return content();
  }
  void list(const QVector<NoteId>& ids) {
    QStringList texts;
    for (const NoteId id : ids) texts += row(u"x"_s, id);
    fill("idList", texts);
  }
  NoteId person = NoteId(0), order = NoteId(0);
};

// --- fields of forms ---

TEST_F(FieldReports, NamesTheFieldsOfATypeOnEveryListedForm) {
  EXPECT_EQ(
      typed(u"TEXT (1280) means text or text list"_s),
      records({u"Person|per   --> LastName"_s, u"Person|per   --> FirstName"_s, u"Order   --> Note"_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, FindsAFormByItsAlias) {
  fill("idList", {u" per  # 00000001"_s});
  EXPECT_EQ(typed(u"(1076)"_s), records({u" per   --> Owner"_s}));
}

TEST_F(FieldReports, TakesAllRowsWhateverIsMarked) {
  control<ListBox>("idList").setSelected(1, true);
  host.boxes.clear();
  EXPECT_EQ(typed(u"(768)"_s), records({u"Person|per   --> Age"_s, u"Order   --> Total"_s}));
}

TEST_F(FieldReports, ATypeThatNoFieldHasGivesAnEmptyReport) {
  EXPECT_EQ(typed(u"FORMULA (1536) means formula"_s), QString());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, TheNumberOfATypeNeedsItsEnd) {
  EXPECT_EQ(typed(u"TEXT (1280 means text"_s), QString());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, TheNumberOfATypeNeedsNoBeginning) {
  EXPECT_EQ(typed(u"1076)"_s), records({u"Person|per   --> Owner"_s}));
}

TEST_F(FieldReports, ATypeBeyondSixteenBitsOverflows) {
  setText("cmbFieldType", u"(70000)"_s);
  EXPECT_EQ(boxesOf("cmdFieldTypes"), ShownBoxes({listBox(err::Overflow)}));
  EXPECT_EQ(content(), QString());
}

// The number is read for each field, so that without a field there is nothing that overflows.
TEST_F(FieldReports, ATypeIsReadForFieldsOnly) {
  fill("idList", {row(u"NoSuchForm"_s, NoteId(1))});
  EXPECT_EQ(typed(u"(70000)"_s), QString());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, WithoutATypeABoxAsksForOne) {
  setText("txtFieldContent", u"old"_s);
  setText("cmbFieldType", QString());
  EXPECT_EQ(boxesOf("cmdFieldTypes"),
            ShownBoxes({{u"Field type not specified!\nChoose a field from an open document."_s, 48,
                         u"cmdChkFields"_s}}));
  EXPECT_EQ(content(), QString());
  EXPECT_EQ(notes().log, QStringList());
}

TEST_F(FieldReports, RowsThatNameNoFormArePassedOver) {
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"All"));
  const NoteId id = save(view);
  fill("idList", {row(u"All"_s, id), digits(person), u"Person# 00000001"_s, u" # 00000001"_s,
                  row(u"NoForm"_s, NoteId(4)), row(u"Order"_s, order)});
  EXPECT_EQ(typed(u"(768)"_s), records({u"Order   --> Total"_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, AnEmptyListGivesAnEmptyBoxInBothTools) {
  fill("idList", {});
  for (const char* button : {"cmdFieldTypes", "cmdChkFields"}) {
    setText("txtFieldContent", u"old"_s);
    setText("cmbFieldType", u"(1280)"_s);
    EXPECT_EQ(boxesOf(button), ShownBoxes()) << button;
    EXPECT_EQ(content(), QString()) << button;
  }
}

TEST_F(FieldReports, FieldsOfFormsLeaveTheDocumentAndTheKindOfTheList) {
  const Object document = documentObject(memo());
  state().gDoc = document;
  state().gDocKind = u"DESIGN"_s;
  typed(u"(1280)"_s);
  EXPECT_EQ(state().gDoc, document);
  EXPECT_EQ(state().gDocKind, u"DESIGN"_s);
}

// What changes the list on the way, here another click behind a box, ends the walk.
TEST_F(FieldReports, TheWalkEndsWithAListThatGrowsShorter) {
  notes().onCall = [this](const QString& name) {
    if (name == u"GETFORM") fill("idList", {row(u"Order"_s, order)});
  };
  EXPECT_EQ(typed(u"(768)"_s), records({u"Person|per   --> Age"_s}));
}

TEST_F(FieldReports, RowsThatComeOnTheWayAreNotLookedAt) {
  notes().onCall = [this](const QString& name) {
    if (name == u"GETFORM") control<ListBox>("idList").addItem(row(u"Order"_s, order));
  };
  EXPECT_EQ(typed(u"(768)"_s), records({u"Person|per   --> Age"_s, u"Order   --> Total"_s}));
}

TEST_F(FieldReports, FieldsWithoutADatabaseShowTheDescriptionAlone) {
  state().gDb.release();
  setText("cmbFieldType", u"(1280)"_s);
  EXPECT_EQ(boxesOf("cmdFieldTypes"), ShownBoxes({listBox(err::ObjectNotSet)}));
}

// --- contents of notes ---

TEST_F(FieldReports, ShowsTheFirstValueOfAFieldInEveryListedNote) {
  const NoteId one = memo(u"Town"_s, textListValue({u"Ulm"_s, u"Bonn"_s}));
  const NoteId none = memo();
  const NoteId two = memo(u"TOWN"_s, textValue(u"Kiel"));
  list({one, none, two});
  EXPECT_EQ(contentsOf(u"town"_s), records({digits(one) + u" --> Ulm", digits(two) + u" --> Kiel"}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, ValuesHaveTheirUsualText) {
  const NoteId number = memo(u"V"_s, numberValue(1.5));
  const NoteId date = memo(u"V"_s, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
  const NoteId empty = memo(u"V"_s, textValue(u""));
  RichText body;
  body.appendText(u"Dear Mr Okafor"_s);
  const NoteId rich = memo(u"V"_s, rawValue(itemtype::RichText, body.toBytes()));
  list({number, date, empty, rich});
  const QString shown = contentsOf(u"V"_s);
  EXPECT_EQ(shown, records({digits(number) + u" --> 1.5", digits(date) + u" --> 11.03.2024",
                            digits(empty) + u" --> ", digits(rich) + u" --> Dear Mr Okafor"}));
}

TEST_F(FieldReports, ALineFeedInAValueGetsACarriageReturn) {
  const NoteId id = memo(u"V"_s, textValue(QStringView(u"a\0b", 3)));
  list({id});
  EXPECT_EQ(contentsOf(u"V"_s), records({digits(id) + u" --> a\r\nb"}));
}

TEST_F(FieldReports, AProfileListWorksAsWell) {
  const QString name = u"$profile_005Prefs_"_s;
  Note profile = document(u"Prefs"_s);
  profile.add(u"$Name"_s, itemflag::Summary, textValue(name));
  profile.add(u"Colour"_s, itemflag::Summary, textValue(u"blue"));
  const NoteId id = save(profile);
  fill("idList", {row(name, id)});
  EXPECT_EQ(contentsOf(u"Colour"_s), records({digits(id) + u" --> blue"}));
}

TEST_F(FieldReports, TheWholeOfARowWithoutAMarkIsTheId) {
  const NoteId id = memo(u"V"_s, textValue(u"x"));
  fill("idList", {digits(id), QString::number(id.value(), 16)});
  EXPECT_EQ(contentsOf(u"V"_s),
            records({digits(id) + u" --> x", QString::number(id.value(), 16) + u" --> x"}));
  fill("idList", {u"no ID at all"_s});
  press("cmdChkFields");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].style, box::Critical);
  EXPECT_EQ(host.boxes[0].title, u"cmdChkFields"_s);
  EXPECT_TRUE(host.boxes[0].text.contains(u"no ID at all"_s)) << host.boxes[0].text.toStdString();
}

TEST_F(FieldReports, TheFirstShortMarkEndsTheName) {
  const NoteId id = memo(u"V"_s, textValue(u"x"));
  fill("idList", {u"a# "_s + digits(id)});
  EXPECT_EQ(contentsOf(u"V"_s), records({digits(id) + u" --> x"}));
}

TEST_F(FieldReports, WithoutANameNoNoteHasTheItem) {
  list({memo(u"V"_s, textValue(u"x"))});
  setText("txtFieldContent", u"old"_s);
  EXPECT_EQ(contentsOf(QString()), QString());
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, AnItemWithoutValuesEndsTheReportInABox) {
  const NoteId good = memo(u"V"_s, textValue(u"x")), bad = memo(u"V"_s, noTexts());
  list({good, bad});
  setText("txtFieldName", u"V"_s);
  setText("txtFieldContent", u"old"_s);
  EXPECT_EQ(boxesOf("cmdChkFields"), ShownBoxes({listBox(err::TypeMismatch)}));
  EXPECT_EQ(content(), QString());
}

TEST_F(FieldReports, NotesThatAreGoneOrUnreadableAreSkipped) {
  const NoteId stub = memo(u"V"_s, textValue(u"x")), damaged = memo(u"V"_s, textValue(u"x"));
  const NoteId good = memo(u"V"_s, textValue(u"x"));
  database->notes().remove(stub);
  const QByteArray sql =
      "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(damaged.value());
  ASSERT_EQ(sqlite3_exec(database->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  list({stub, damaged, good});
  EXPECT_EQ(contentsOf(u"V"_s), records({digits(good) + u" --> x"}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FieldReports, TheDocumentIsTheLastNoteTried) {
  const NoteId one = memo(u"V"_s, textValue(u"x")), two = memo();
  state().gDocKind = u"PROFILE"_s;
  list({one, two});
  contentsOf(u"V"_s);
  EXPECT_EQ(state().gDoc.get(u"NoteID"_s).text(), two.hexText());
  EXPECT_EQ(state().gDocKind, u"PROFILE"_s);
  database->notes().remove(two);
  contentsOf(u"V"_s);
  EXPECT_TRUE(state().gDoc.isNothing());
}

TEST_F(FieldReports, AnUnknownIdEndsTheReportInABoxAndKeepsTheDocument) {
  const NoteId one = memo(u"V"_s, textValue(u"x"));
  fill("idList", {digits(one), u"7FFFFFFC"_s, digits(one)});
  setText("txtFieldName", u"V"_s);
  press("cmdChkFields");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.contains(u"7FFFFFFC"_s)) << host.boxes[0].text.toStdString();
  EXPECT_EQ(content(), QString());
  EXPECT_EQ(state().gDoc.get(u"NoteID"_s).text(), one.hexText());
}

TEST_F(FieldReports, NeitherToolYieldsOrSetsThePointer) {
  typed(u"(1280)"_s);
  contentsOf(u"$TITLE"_s);
  EXPECT_EQ(host.yields, 0);
  EXPECT_EQ(host.pointers, QVector<int>());
}

TEST_F(FieldReports, TheButtonsTellWhatTheyDo) {
  const auto expect = [this](const char* name, const QString& caption, const QString& tip) {
    const Button& button = control<Button>(name);
    EXPECT_EQ(button.text(), caption);
    EXPECT_EQ(button.toolTip(), tip);
    EXPECT_TRUE(button.isEnabled()) << name;
  };
  expect("cmdFieldTypes", u"Field names by Type"_s,
         u"Select design forms and field type. Lists all designs fields by type selected."_s);
  expect("cmdChkFields", u"Fields content"_s,
         u"Select design forms and field name. Lists all fields contents."_s);
  expect("cmdChkFormula", u"check @Function"_s, QString());
  expect("cmdCollbyFormula", u"Collection by formula"_s,
         u"Type a view formula below and create a collection"_s);
}

// --- a failure in every place ---

TEST_F(FieldReports, AnyFailureEndsFieldsOfFormsInOneBox) {
  const int runs = pressWithEveryFault(
      "cmdFieldTypes", Door::ObjectModel,
      [this] {
        setText("cmbFieldType", u"(1280)"_s);
        setText("txtFieldContent", u"old"_s);
      },
      [this](int, const QString&) -> ShownBoxes {
        EXPECT_EQ(content(), QString());
        return {listBox(70)};
      });
  EXPECT_EQ(runs, 2 + 4 + 2 + 2) << "two forms with their lists of fields, and each field";
}

TEST_F(FieldReports, AnyFailureEndsContentsOfNotesInOneBox) {
  list({memo(u"V"_s, textValue(u"x")), memo(), memo(u"V"_s, textValue(u"y"))});
  const int runs = pressWithEveryFault(
      "cmdChkFields", Door::ObjectModel,
      [this] {
        setText("txtFieldName", u"V"_s);
        setText("txtFieldContent", u"old"_s);
      },
      [this](int, const QString&) -> ShownBoxes {
        EXPECT_EQ(content(), QString());
        return {listBox(70)};
      });
  EXPECT_EQ(runs, 3 + 2 + 3);
}

}  // namespace
}  // namespace lens
