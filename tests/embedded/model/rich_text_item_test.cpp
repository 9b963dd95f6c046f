#include "embedded/model/open_note.h"
#include "embedded/model/support/test_documents.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr RichFont kPlain{1, 0, 0, 10}, kBold{1, 1, 0, 10};

struct RichTextItems : Documents {
  RichTextItems() {
    RichText text;
    text.appendText(u"The old na"_s, kPlain);
    text.appendText(u"me, the NAME"_s, kBold);
    text.beginParagraph();
    text.appendText(u"a name"_s, kPlain);
    id = t.add(
        {{u"Body"_s, rawValue(itemtype::RichText, text.toBytes()), 0}, {u"Form"_s, textValue(u"Memo")}});
    document = t.document(id);
    body = itemOf(document, u"Body"_s);
  }
  int replace(const QString& search, const QString& replacement, int options) {
    body.call(u"CreateNavigator"_s).object().call(u"FindFirstElement"_s, 4);
    const Object range = body.call(u"CreateRange"_s).object();
    return int(range.call(u"FindAndReplace"_s, search, replacement, options).number());
  }
  QString text() { return body.get(u"Text"_s).text(); }
  RichText savedText() {
    saveForced(document);
    return RichText::fromBytes(stored(id).find(u"Body")->data());
  }
  NoteId id;
  Object document, body;
};

}  // namespace

TEST_F(RichTextItems, ReplacingAllIgnoresCaseAndRuns) {
  EXPECT_EQ(replace(u"NAME"_s, u"title"_s, 17), 3);
  EXPECT_EQ(text(), u"The old title, the title\r\na title"_s);
  const RichText saved = savedText();
  EXPECT_EQ(saved.plainText(), text());
  EXPECT_EQ(saved.elements()[1].text, u"The old title"_s);
  EXPECT_EQ(saved.elements()[1].font, kPlain);
  EXPECT_EQ(saved.elements()[2].font, kBold);
}

TEST_F(RichTextItems, OptionsTellCaseAndHowMany) {
  EXPECT_EQ(replace(u"name"_s, u"n1"_s, 0), 1);
  EXPECT_EQ(text(), u"The old n1, the NAME\r\na name"_s);
  EXPECT_EQ(replace(u"name"_s, u"n2"_s, 1), 1);
  EXPECT_EQ(text(), u"The old n1, the n2\r\na name"_s);
  EXPECT_EQ(replace(u"NAME"_s, u"n3"_s, 16), 0);
  EXPECT_EQ(replace(u"n"_s, u"nn"_s, 16), 3);
  EXPECT_EQ(text(), u"The old nn1, the nn2\r\na nname"_s);
  EXPECT_EQ(raised([&] { replace(u"n"_s, u""_s, 17 | 4); }), err::InvalidCall);
  EXPECT_EQ(raised([&] { replace(u"n"_s, u""_s, -1); }), err::InvalidCall);
  EXPECT_TRUE(reasonOf([&] { replace(u"n"_s, u""_s, 2); }).startsWith(u"mail.nsf: "_s));
}

TEST_F(RichTextItems, AnEmptySearchFindsNothing) {
  const QByteArray before = stored(id).find(u"Body")->value;
  EXPECT_EQ(replace(u""_s, u"x"_s, 17), 0);
  EXPECT_EQ(replace(u"absent"_s, u"x"_s, 17), 0);
  saveForced(document);
  EXPECT_EQ(stored(id).find(u"Body")->value, before);
}

TEST_F(RichTextItems, WhatIsPutInIsNotSearchedAgain) {
  EXPECT_EQ(replace(u"a"_s, u"aa"_s, 17), 4);
  EXPECT_EQ(text(), u"The old naame, the NaaME\r\naa naame"_s);
}

TEST_F(RichTextItems, AnEmptyReplacementTakesTheHitsAway) {
  EXPECT_EQ(replace(u" name"_s, u""_s, 17), 3);
  EXPECT_EQ(text(), u"The old, the\r\na"_s);
}

TEST_F(RichTextItems, ChangesStayInMemoryUntilTheDocumentIsSaved) {
  replace(u"old"_s, u"new"_s, 17);
  EXPECT_TRUE(itemOf(t.document(id), u"Body"_s).get(u"Text"_s).text().contains(u"old"_s));
  EXPECT_TRUE(savedText().plainText().contains(u"new"_s));
}

TEST_F(RichTextItems, CompactKeepsTheText) {
  body.call(u"AppendText"_s, u" one"_s);
  body.call(u"AppendText"_s, u" two"_s);
  const QString before = text();
  body.call(u"COMPACT"_s);
  body.call(u"compact"_s);
  EXPECT_EQ(text(), before);
  EXPECT_EQ(savedText().elements().size(), 5);
}

TEST_F(RichTextItems, TheNavigatorNeverFailsOnWhatIsNotThere) {
  const Object navigator = body.call(u"CREATENAVIGATOR"_s).object();
  for (const int present : {3, 4}) EXPECT_TRUE(navigator.call(u"FINDFIRSTELEMENT"_s, present).boolean());
  for (const int absent : {1, 5, 6, 7, 8, 9})
    EXPECT_FALSE(navigator.call(u"findfirstELEMENT"_s, absent).boolean());
  const Object empty = document.call(u"CREATERICHTEXTITEM"_s, u"Empty"_s).object();
  EXPECT_FALSE(empty.call(u"CREATENAVIGATOR"_s).object().call(u"FINDFIRSTELEMENT"_s, 4).boolean());
  EXPECT_EQ(empty.call(u"CREATERANGE"_s).object().call(u"FINDANDREPLACE"_s, u"a"_s, u"b"_s, 17).number(), 0);
}

TEST_F(RichTextItems, ANewOneStandsAtTheEndAndSurvivesEmpty) {
  const Object item = document.call(u"createRichTextITEM"_s, u"Note"_s).object();
  EXPECT_EQ(item.get(u"Type"_s).number(), 1);
  EXPECT_EQ(item.get(u"Values"_s), listOf({u""}));
  item.call(u"APPENDTEXT"_s, u""_s);
  saveForced(document);
  const Object again = itemOf(t.document(id), u"note"_s);
  EXPECT_EQ(again.get(u"Type"_s).number(), 1);
  EXPECT_EQ(again.call(u"GetFormattedText"_s, true, 1000).text(), u""_s);
  EXPECT_EQ(namesOf(stored(id)), QStringList({u"Body"_s, u"Form"_s, u"Note"_s}));
  EXPECT_EQ(stored(id).find(u"Note")->flags, 0);
}

TEST_F(RichTextItems, CreatingAlwaysAddsOne) {
  document.call(u"CREATERICHTEXTITEM"_s, u"Body"_s).object().call(u"APPENDTEXT"_s, u"second"_s);
  saveForced(document);
  EXPECT_EQ(namesOf(stored(id)), QStringList({u"Body"_s, u"Form"_s, u"Body"_s}));
  EXPECT_NE(itemOf(t.document(id), u"Body"_s).get(u"Text"_s).text(), u"second"_s);
}

TEST_F(RichTextItems, AppendedTextGoesOnInTheLastParagraph) {
  body.call(u"appendTEXT"_s, u", more\r\nand more"_s);
  EXPECT_EQ(text(), u"The old name, the NAME\r\na name, more\r\nand more"_s);
  body.call(u"APPENDTEXT"_s, 12.5);
  EXPECT_EQ(savedText().plainText(), u"The old name, the NAME\r\na name, more\r\nand more12.5"_s);
}

TEST_F(RichTextItems, HaveTheMembersOfItemsAndNoMisspeltOne) {
  EXPECT_EQ(body.get(u"NAME"_s).text(), u"Body"_s);
  EXPECT_FALSE(body.get(u"ISSUMMARY"_s).boolean());
  body.set(u"ISENCRYPTED"_s, true);
  EXPECT_TRUE(body.get(u"isencrypted"_s).boolean());
  EXPECT_EQ(raised([&] { body.call(u"getformatredtext"_s, false, 0); }), err::MemberNotSupported);
  for (const QString& member : {u"APPENDTEXT"_s, u"CREATERANGE"_s, u"COMPACT"_s, u"EMBEDDEDOBJECTS"_s})
    EXPECT_EQ(raised([&] { itemOf(document, u"Form"_s).call(member); }), err::MemberNotSupported);
}

TEST_F(RichTextItems, AnItemThatBecameAPlainValueSaysSo) {
  const Object range = body.call(u"CREATERANGE"_s).object();
  document.call(u"REPLACEITEMVALUE"_s, u"Body"_s, u"plain"_s);
  EXPECT_EQ(body.get(u"Text"_s).text(), u"plain"_s);
  EXPECT_EQ(raised([&] { body.call(u"APPENDTEXT"_s, u"x"_s); }), modelfault::WrongKind);
  EXPECT_EQ(raised([&] { range.call(u"FINDANDREPLACE"_s, u"p"_s, u"q"_s, 17); }), modelfault::WrongKind);
  EXPECT_EQ(itemOf(document, u"Body"_s).get(u"Type"_s).number(), 1280);
}

TEST_F(RichTextItems, ARemovedItemRefusesItsNavigatorAndRange) {
  const Object range = body.call(u"CREATERANGE"_s).object();
  const Object navigator = body.call(u"CREATENAVIGATOR"_s).object();
  document.call(u"RemoveItem"_s, u"Body"_s);
  EXPECT_EQ(raised([&] { range.call(u"FINDANDREPLACE"_s, u"a"_s, u"b"_s, 17); }), modelfault::ItemRemoved);
  EXPECT_EQ(raised([&] { navigator.call(u"FINDFIRSTELEMENT"_s, 4); }), modelfault::ItemRemoved);
  EXPECT_EQ(raised([&] { body.call(u"COMPACT"_s); }), modelfault::ItemRemoved);
}

TEST_F(RichTextItems, ABodyOfFiveMegabytesIsOneItem) {
  const Object item = document.call(u"CREATERICHTEXTITEM"_s, u"Large"_s).object();
  QString line;
  for (int i = 0; i < 100; ++i) line += u"Zeile mit ä und Name. "_s;
  QString whole;
  while (whole.size() < 5'000'000) whole += line + u"\r\n"_s;
  item.call(u"APPENDTEXT"_s, whole);
  const int hits = int(whole.count(u"Name"_s));
  EXPECT_EQ(
      item.call(u"CREATERANGE"_s).object().call(u"FINDANDREPLACE"_s, u"NAME"_s, u"Titel"_s, 17).number(),
      hits);
  item.call(u"COMPACT"_s);
  saveForced(document);
  EXPECT_EQ(stored(id).items.size(), 3);
  const Object again = t.document(id);
  EXPECT_EQ(itemOf(again, u"Large"_s).get(u"Text"_s).text(), whole.replace(u"Name"_s, u"Titel"_s));
  again.call(u"RemoveItem"_s, u"Large"_s);
  saveForced(again);
  EXPECT_FALSE(stored(id).has(u"Large"));
}

TEST_F(RichTextItems, ADamagedTextKeepsItsUnreadableEnd) {
  const QByteArray damaged = richValue(u"name"_s) + QByteArray::fromHex("85FFFFFF01");
  const NoteId other = t.add({{u"Body"_s, damaged, 0}});
  document = t.document(other);
  body = itemOf(document, u"Body"_s);
  EXPECT_EQ(replace(u"name"_s, u"title"_s, 17), 1);
  saveForced(document);
  const Item item = *stored(other).find(u"Body");
  EXPECT_TRUE(item.value.endsWith(QByteArray::fromHex("85FFFFFF01")));
  EXPECT_EQ(RichText::fromBytes(item.data()).plainText(), u"title"_s);
}
