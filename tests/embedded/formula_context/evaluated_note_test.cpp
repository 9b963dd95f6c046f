// Notes of the store as documents of formulas, seen through formulas where that is the shortest way.

#include "embedded/formula_context/evaluated_note.h"

#include <gtest/gtest.h>

#include "embedded/formula/formula.h"
#include "embedded/model/support/test_workspace.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

using formula::Fault;
using formula::Name;
using formula::Value;
using testbed::noteOf;
using testbed::richValue;

// The value as source would write it, for short comparisons.
QString shown(const Value& value) {
  if (value.isError()) return u"error %1"_s.arg(value.errorCode(), 4, 16, QChar(u'0'));
  QStringList texts;
  for (qsizetype i = 0; i < value.count(); ++i)
    texts.append(value.isNumber() ? QString::number(value.number(i)) : value.text(i).toString());
  return texts.join(u':');
}

formula::Outcome run(const QString& source, formula::Document& document) {
  static formula::MachineEnvironment environment;
  const formula::Compiled compiled = formula::compile(source, {&environment});
  EXPECT_TRUE(compiled) << source.toStdString();
  formula::Evaluation evaluation(compiled.formula, environment);
  return evaluation.run(&document, nullptr);
}

Note memo() {
  return noteOf({{u"Form"_s, textValue(u"Memo")},
                 {u"To"_s, textListValue({u"Ada"_s, u"Bob"_s}), itemflag::Summary | itemflag::Names},
                 {u"Hidden"_s, numberValue(7), 0},
                 {u"Body"_s, richValue(u"First part"_s), 0},
                 {u"Body"_s, richValue(u"Second part"_s), 0}});
}

TEST(EvaluatedNote, ItemsAreReadInAnyCase) {
  Note note = memo();
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"form"_s, document).value), u"Memo"_s);
  EXPECT_EQ(shown(run(u"TO"_s, document).value), u"Ada:Bob"_s);
  EXPECT_EQ(shown(run(u"@IsAvailable(Nowhere)"_s, document).value), u"0"_s);
  EXPECT_EQ(document.itemNames(), QStringList({u"Form"_s, u"To"_s, u"Hidden"_s, u"Body"_s}));
}

TEST(EvaluatedNote, RichTextIsThereAndReadsAsEmpty) {
  Note note = memo();
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@IsAvailable(Body)"_s, document).value), u"1"_s);
  EXPECT_EQ(shown(run(u"Body"_s, document).value), QString());
  EXPECT_EQ(document.richText(Name(u"body"_s)), u"First part\nSecond part"_s);
  EXPECT_EQ(document.richText(Name(u"Form"_s)), QString());
}

TEST(EvaluatedNote, ASearchSeesSummaryItemsOnly) {
  const Note note = memo();
  EvaluatedNote document(note, nullptr, EvaluatedNote::Items::Summary);
  EXPECT_EQ(document.itemNames(), QStringList({u"Form"_s, u"To"_s}));
  EXPECT_EQ(shown(run(u"@IsAvailable(Hidden)"_s, document).value), u"0"_s);
}

TEST(EvaluatedNote, WritingKeepsFlagsAndAddsSummaryItems) {
  Note note = memo();
  EvaluatedNote document(&note, nullptr);
  EXPECT_TRUE(run(u"FIELD to := \"Cy\"; FIELD Fresh := 1 : 2; 1"_s, document).modified);
  EXPECT_EQ(note.find(u"To")->name, u"To"_s);
  EXPECT_EQ(note.find(u"To")->value, textValue(u"Cy"));
  EXPECT_EQ(note.find(u"To")->flags, itemflag::Summary | itemflag::Names);
  EXPECT_EQ(note.find(u"Fresh")->value, numberListValue({1, 2}));
  EXPECT_EQ(note.find(u"Fresh")->flags, itemflag::Summary);
}

TEST(EvaluatedNote, OfSeveralItemsOneStays) {
  Note note = memo();
  EvaluatedNote document(&note, nullptr);
  run(u"FIELD Body := \"plain\"; 1"_s, document);
  ASSERT_EQ(note.items.size(), 4);
  EXPECT_EQ(note.items[3].value, textValue(u"plain"));
}

TEST(EvaluatedNote, RemovingTakesAllItemsOfTheName) {
  Note note = memo();
  EvaluatedNote document(&note, nullptr);
  run(u"FIELD body := @Unavailable; 1"_s, document);
  EXPECT_FALSE(note.has(u"Body"));
  EXPECT_EQ(note.items.size(), 3);
}

TEST(EvaluatedNote, WithoutANoteToWriteWritingIsRefused) {
  const Note note = memo();
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@SetField(\"Form\"; \"x\")"_s, document).value), u"error 055a"_s);
  EXPECT_THROW(document.removeItem(u"Form"_s), Fault);
  EXPECT_TRUE(note.has(u"Form"));
}

TEST(EvaluatedNote, TellsWhoItIs) {
  Note note = memo();
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@IsNewDoc"_s, document).value), u"1"_s);
  EXPECT_EQ(shown(run(u"@DocumentUniqueID"_s, document).value), QString());
  EXPECT_EQ(shown(run(u"@IsResponseDoc"_s, document).value), u"0"_s);
  note.header.id = NoteId(0x8F6);
  ASSERT_TRUE(Unid::parse(u"0123456789ABCDEF0123456789ABCDEF", note.header.unid));
  EXPECT_EQ(shown(run(u"@NoteID"_s, document).value), u"NT000008F6"_s);
  EXPECT_EQ(shown(run(u"@DocumentUniqueID"_s, document).value), u"0123456789ABCDEF0123456789ABCDEF"_s);
  EXPECT_EQ(shown(run(u"@IsNewDoc"_s, document).value), u"0"_s);
}

TEST(EvaluatedNote, AnAnswerKnowsItsParent) {
  const QString parent = u"00112233445566778899AABBCCDDEEFF"_s;
  Note note = noteOf({{u"$REF"_s, noteRefsValue({Unid::fromText(parent)})}});
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@IsResponseDoc"_s, document).value), u"1"_s);
  EXPECT_EQ(shown(run(u"@InheritedDocumentUniqueID"_s, document).value), parent);
}

TEST(EvaluatedNote, ABrokenReferenceLeadsNowhere) {
  const Note note = noteOf({{u"$REF"_s, rawValue(itemtype::NoteRefs, "\x01")}});
  EXPECT_TRUE(parentOf(note).isNull());
  EXPECT_FALSE(EvaluatedNote(note).properties().isResponse);
}

TEST(EvaluatedNote, AttachmentsAreListed) {
  FileObject file;
  file.name = u"plan.pdf"_s;
  file.size = 2048;
  file.modified = timeDateOfDate(QDate(2024, 2, 1));
  Note note = noteOf({{u"$FILE"_s, fileObjectValue(file)},
                      {u"$FILE"_s, rawValue(itemtype::Object, "\x00")},
                      {u"Other"_s, fileObjectValue(file)}});
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@AttachmentNames"_s, document).value), u"plan.pdf"_s);
  EXPECT_EQ(shown(run(u"@AttachmentLengths"_s, document).value), u"2048"_s);
  EXPECT_EQ(shown(run(u"@Attachments"_s, document).value), u"1"_s);
  EXPECT_GT(document.properties().size, 2048);
}

TEST(EvaluatedNote, AuthorsComeFromAuthorItems) {
  const quint16 authors = itemflag::Summary | itemflag::Authors;
  Note note = noteOf({{u"Writers"_s, textListValue({u"Ada"_s, u"Bob"_s}), authors},
                      {u"$UpdatedBy"_s, textListValue({u"Eve"_s})},
                      {u"Editor"_s, textValue(u"Cy"), authors}});
  EvaluatedNote document(note);
  EXPECT_EQ(shown(run(u"@Author"_s, document).value), u"Ada:Bob:Cy"_s);
  note.items.removeIf([](const Item& item) { return (item.flags & itemflag::Authors) != 0; });
  EXPECT_EQ(shown(run(u"@Author"_s, document).value), u"Eve"_s);
}

TEST(EvaluatedNote, AnswersAreFoundAtAnyDepth) {
  testbed::TestWorkspace t;
  QVector<Note> notes(3, noteOf({}));
  for (int i = 0; i < 3; ++i) {
    if (i > 0) notes[i].header.parent = notes[i - 1].header.unid;
    t.store->notes().save(notes[i]);
  }
  EvaluatedNote last(notes[2], t.store.get());
  EXPECT_FALSE(last.respondsToSelected(true));
  last.setSelected([&](const Unid& unid) { return unid == notes[0].header.unid; });
  EXPECT_FALSE(last.respondsToSelected(false));
  EXPECT_TRUE(last.respondsToSelected(true));
  EvaluatedNote middle(notes[1], t.store.get());
  middle.setSelected([&](const Unid& unid) { return unid == notes[0].header.unid; });
  EXPECT_TRUE(middle.respondsToSelected(false));
}

TEST(EvaluatedNote, ACircleOfAnswersEnds) {
  testbed::TestWorkspace t;
  Note note = noteOf({});
  note.header.unid = Unid::create();
  note.header.parent = note.header.unid;
  t.store->notes().save(note);
  EvaluatedNote document(note, t.store.get());
  document.setSelected([](const Unid&) { return false; });
  EXPECT_FALSE(document.respondsToSelected(true));
}

}  // namespace
}  // namespace lens
