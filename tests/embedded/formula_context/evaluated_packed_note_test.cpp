// A packed note and the same note unpacked are one and the same document to every formula.
#include "embedded/formula_context/evaluated_packed_note.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include "embedded/formula/formula.h"
#include "embedded/model/support/test_workspace.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

using formula::Name;
using formula::Value;

const QStringList& someNames() {
  static const QStringList names{u"Form"_s,   u"FORM"_s, u"Subject"_s, u"Amount"_s,    u"Größe"_s,
                                 u"GRÖSSE"_s, u"$REF"_s, u"Mask"_s,    u"ma\u017Fk"_s, u"$FILE"_s,
                                 u"Body"_s,   u"When"_s, u"$Name"_s,   u"Gone"_s,      u"\U00010400\u20AC"_s,
                                 u"x"_s,      u"y"_s,    u"z"_s};
  return names;
}

template <class Range>
auto one(const Range& range, QRandomGenerator& random) {
  return range[random.bounded(int(range.size()))];
}

QString randomText(QRandomGenerator& random) {
  static const QString letters = u"ab Z09~\u00E9\u20AC\u4E2D\n\t\u0001"_s;
  QString text;
  for (int length = random.bounded(12); length > 0; --length) text += letters[random.bounded(letters.size())];
  return text;
}

TimeDate randomTime(QRandomGenerator& random) {
  return {{random.generate() % 8640000, 0x00258000 + random.generate() % 0x1000}};
}

QByteArray randomValue(QRandomGenerator& random) {
  const TimeDate time = randomTime(random);
  QByteArray bytes(random.bounded(40), Qt::Uninitialized);
  for (char& byte : bytes) byte = char(random.bounded(256));
  static constexpr quint16 kTypes[] = {itemtype::Text,     itemtype::TextList,    itemtype::Number,
                                       itemtype::Time,     itemtype::TimeRange,   itemtype::NumberRange,
                                       itemtype::NoteRefs, itemtype::Unavailable, itemtype::Error,
                                       itemtype::Object,   itemtype::RichText,    itemtype::Rfc822Text};
  switch (random.bounded(8)) {
    case 0:
      return rawValue(one(std::span(kTypes), random), bytes);
    case 1:
      return textListValue({randomText(random), randomText(random)});
    case 2:
      return numberValue(random.bounded(100));
    case 3:
      return timeListValue({time}, {{time, time}});
    case 4:
      return timeValue(time);
    case 5:
      return numberListValue({1, 2, 3});
    default:
      return textValue(randomText(random));
  }
}

Unid randomUnid(QRandomGenerator& random) {
  QByteArray bytes(16, char(random.bounded(2)));
  bytes[15] = char(random.bounded(4));
  return Unid::fromBytes(bytes);
}

QByteArray randomFile(QRandomGenerator& random) {
  FileObject file;
  file.name = u"a.txt"_s;
  file.size = random.generate();
  QByteArray value = fileObjectValue(file);
  if (random.bounded(4) == 0) value.chop(random.bounded(int(value.size()) - 2));
  return value;
}

Note randomNote(QRandomGenerator& random) {
  Note note;
  note.header.id = NoteId(quint32(random.bounded(3)));
  note.header.unid = randomUnid(random);
  if (random.bounded(2)) note.header.parent = randomUnid(random);
  note.header.created = randomTime(random);
  note.header.modified = randomTime(random);
  note.header.accessed = randomTime(random);
  if (random.bounded(3) == 0) note.add(u"$file"_s, itemflag::Summary, randomFile(random));
  if (random.bounded(3) == 0)
    note.add(u"$Ref"_s, random.bounded(2) ? itemflag::Summary : 0, noteRefsValue({randomUnid(random)}));
  for (int count = random.bounded(12); count > 0; --count)
    note.add(
        one(someNames(), random),
        quint16((random.bounded(4) ? itemflag::Summary : 0) | (random.bounded(5) ? 0 : itemflag::Authors)),
        randomValue(random));
  return note;
}

void expectSame(const formula::Document& a, const formula::Document& b, const QString& name) {
  Value left, right;
  const bool inLeft = a.item(Name(name), left), inRight = b.item(Name(name), right);
  EXPECT_EQ(inLeft, inRight) << name.toStdString();
  if (inLeft && inRight) {
    EXPECT_TRUE(left.identical(right)) << name.toStdString();
  }
  EXPECT_EQ(a.richText(Name(name)), b.richText(Name(name)));
}

void expectSame(const formula::Document& a, const formula::Document& b) {
  EXPECT_EQ(a.itemNames(), b.itemNames());
  EXPECT_EQ(a.authorItems(), b.authorItems());
  const formula::DocumentProperties left = a.properties(), right = b.properties();
  EXPECT_EQ(left.unid, right.unid);
  EXPECT_EQ(left.parentUnid, right.parentUnid);
  EXPECT_EQ(left.size, right.size);
  EXPECT_EQ(left.noteId, right.noteId);
  EXPECT_EQ(left.isResponse, right.isResponse);
  EXPECT_EQ(left.isNew, right.isNew);
  EXPECT_EQ(timeDateHex(left.created), timeDateHex(right.created));
  EXPECT_EQ(timeDateHex(left.modified), timeDateHex(right.modified));
  EXPECT_EQ(timeDateHex(left.accessed), timeDateHex(right.accessed));
  EXPECT_EQ(a.respondsToSelected(false), b.respondsToSelected(false));
  EXPECT_EQ(a.attachments().size(), b.attachments().size());
}

TEST(EvaluatedPackedNote, SaysTheSameAsTheNoteOfSummaryItems) {
  QRandomGenerator random(21);
  std::vector<Name> prepared;
  for (int n = 0; n < 6; ++n) prepared.emplace_back(someNames()[2 * n]);
  const auto even = [](const Unid& unid) { return unid.bytes().back() % 2 == 0; };
  EvaluatedPackedNote packed(prepared);
  packed.setSelected(even);
  for (int round = 0; round < 1500; ++round) {
    const Note note = randomNote(random);
    const QByteArray bytes = packItems(note.items);
    const PackedNote shown{note.header, PackedItems(bytes)};
    packed.show(shown);
    EvaluatedNote whole(note, nullptr, EvaluatedNote::Items::Summary);
    whole.setSelected(even);
    for (const QString& name : someNames()) expectSame(packed, whole, name);
    if (round % 3 == 0) expectSame(packed, whole);
  }
}

TEST(EvaluatedPackedNote, BeforeItsFirstNoteIsTheEmptyDocument) {
  const Note none;
  expectSame(EvaluatedPackedNote({}), EvaluatedNote(none));
}

TEST(EvaluatedPackedNote, CannotBeWritten) {
  const QByteArray bytes = packItems({});
  const PackedNote note{{}, PackedItems(bytes)};
  EvaluatedPackedNote document({});
  document.show(note);
  EXPECT_THROW(document.setItem(u"x"_s, Value::number(1.0)), formula::Fault);
  EXPECT_THROW(document.removeItem(u"x"_s), formula::Fault);
}

TEST(EvaluatedPackedNote, FormulasGiveTheSameOverBoth) {
  QRandomGenerator random(22);
  formula::MachineEnvironment environment;
  const QStringList sources{
      u"Form = \"a\" | Amount > 3"_s, u"@Implode(@Text(Subject); \"-\") + @Text(@Elements(@DocFields))"_s,
      u"@GetField(\"gro\" + \"esse\") : @GetField(\"größe\")"_s,
      u"@If(@IsAvailable(Mask); @DocLength; @Attachments)"_s, u"@Eval(\"Amount : When : Body\")"_s};
  for (const QString& source : sources) {
    const formula::Compiled compiled = formula::compile(source, {&environment});
    ASSERT_TRUE(compiled) << source.toStdString();
    formula::Evaluation evaluation(compiled.formula, environment);
    EvaluatedPackedNote packed(compiled.formula->itemNames());
    for (int round = 0; round < 300; ++round) {
      const Note note = randomNote(random);
      const QByteArray bytes = packItems(note.items);
      const PackedNote shown{note.header, PackedItems(bytes)};
      packed.show(shown);
      EvaluatedNote whole(note, nullptr, EvaluatedNote::Items::Summary);
      const formula::Outcome left = evaluation.run(&packed, nullptr), right = evaluation.run(&whole, nullptr);
      EXPECT_TRUE(left.value.identical(right.value)) << source.toStdString();
      EXPECT_EQ(left.matches, right.matches);
    }
  }
}

}  // namespace
}  // namespace lens
