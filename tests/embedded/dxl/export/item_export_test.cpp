#include <QTimeZone>
#include <limits>
#include "embedded/dxl/export/dxl_writer.h"

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/dxl/export/export_fixture.h"
#include "embedded/dxl/import_context.h"
#include "embedded/format/source_formula.h"

namespace lens {
namespace {

constexpr quint16 kSummary = itemflag::Summary;

TimeDate at(int year, int month, int day, int hour, Zone zone) {
  return timeDateOf(QDateTime(QDate(year, month, day), QTime(hour, 1, 2, 30), Qt::UTC), zone);
}

class ItemExport : public DxlExport {
 protected:
  // Each in a database of its own, so that the export is that of one item.
  QByteArray itemTrip(quint16 flags, const QByteArray& value, const QString& name = u"A"_s) {
    source_ = create();
    return DxlExport::itemTrip(flags, value, name);
  }
  void expectElement(const QByteArray& dxl, const QByteArray& element) {
    EXPECT_TRUE(dxl.contains(element)) << element.toStdString() << "\nin\n" << dxl.toStdString();
    EXPECT_FALSE(dxl.contains("rawitemdata"));
  }
  void expectRaw(const QByteArray& dxl, const QByteArray& type) {
    EXPECT_TRUE(dxl.contains("<rawitemdata type=\"" + type + "\"")) << dxl.toStdString();
  }
};

TEST_F(ItemExport, TextsAreWrittenAsText) {
  expectElement(itemTrip(kSummary, textValue(u"Grüße <&> \"Karin\" \U0001F600")),
                "<text>Grüße &lt;&amp;&gt; &quot;Karin&quot; \U0001F600</text>");
}

TEST_F(ItemExport, LineBreaksInTextAreElements) {
  expectElement(itemTrip(kSummary, storedTextValue(u"one\n\n two\n")),
                "<text>one<break/><break/> two<break/></text>");
}

TEST_F(ItemExport, BlanksTabsAndCarriageReturnsOfTextStay) {
  expectElement(itemTrip(kSummary, textValue(u"  \ta\r b  ")), "&#13;");
  expectElement(itemTrip(kSummary, textValue(u"   ")), "<text>   </text>");
  expectElement(itemTrip(kSummary, textValue(u"")), "<text/>");
}

TEST_F(ItemExport, CharactersThatXmlCannotHoldAreElements) {
  expectElement(itemTrip(kSummary, textValue(u"bell \a\x1B.")),
                "<text>bell <nonxmlchar value=\"7\"/><nonxmlchar value=\"1b\"/>.</text>");
  expectElement(itemTrip(kSummary, rawValue(itemtype::Text, QByteArray("\x14\xD8\x3D lone half"))),
                "<nonxmlchar value=\"d83d\"/> lone half");
  expectElement(itemTrip(kSummary, textListValue({u"\1"_s})), "<text><nonxmlchar value=\"1\"/></text>");
  expectElement(itemTrip(0, sourceFormulaValue(u"\"\2\"")),
                "<formula>&quot;<nonxmlchar value=\"2\"/>&quot;</formula>");
}

// Every unit of UTF-16 but for the line feed, which is a break, and whole pairs.
TEST_F(ItemExport, EveryCharacterOfATextComesBack) {
  QString text;
  for (int unit = 1; unit < 0x10000; ++unit) {
    if (unit != '\n') text += QChar(char16_t(unit));
    if (unit % 4000 != 0) continue;
    itemTrip(kSummary, textValue(text));
    text.clear();
  }
}

TEST_F(ItemExport, TextThatNoElementGivesBackIsRaw) {
  expectRaw(itemTrip(kSummary, rawValue(itemtype::Text, QByteArray("line feed \n"))), "500");
  expectRaw(itemTrip(kSummary, rawValue(itemtype::Text, QByteArray("\x02\xD5 another group\x1A"))), "500");
}

TEST_F(ItemExport, TextListsAreWrittenAsTexts) {
  expectElement(itemTrip(kSummary, storedTextListValue({u"a"_s, u""_s, u"b\nc"_s})),
                "<textlist><text>a</text><text/><text>b<break/>c</text></textlist>");
  expectElement(itemTrip(kSummary, textListValue({u"one"_s})), "<textlist><text>one</text></textlist>");
  expectElement(itemTrip(kSummary, textListValue({})), "<textlist/>");
}

TEST_F(ItemExport, TextListsWithMoreOrLessThanTheirEntriesAreRaw) {
  expectRaw(itemTrip(kSummary, textListValue({u"a"_s}) + "rest"), "501");
  expectRaw(itemTrip(kSummary, QByteArray("\x01\x05\x02\x00\x05\x00\x01\x00"
                                          "ab",
                                          10)),
            "501");
  expectRaw(itemTrip(kSummary, rawValue(itemtype::TextList, {})), "501");
}

TEST_F(ItemExport, NumbersKeepEveryBit) {
  for (const double number : {0.0, 1.0 / 3, 1e300, -5e-324, 123456789012345678.0, 0.1 + 0.2})
    expectElement(itemTrip(kSummary, numberValue(number)), "<number>");
  expectElement(itemTrip(kSummary, numberListValue({1, 2.5})),
                "<numberlist><number>1</number><number>2.5</number></numberlist>");
  expectElement(itemTrip(kSummary, numberListValue({})), "<numberlist/>");
}

TEST_F(ItemExport, NumbersWithoutAFigureAreRaw) {
  for (const double number :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    expectRaw(itemTrip(kSummary, numberValue(number)), "300");
  expectRaw(itemTrip(kSummary, numberValue(-0.0)), "300");
  expectRaw(itemTrip(kSummary, numberListValue({1, std::numeric_limits<double>::quiet_NaN()})), "301");
  expectRaw(itemTrip(kSummary, numberListValue({1, 2}) + "x"), "301");
  expectRaw(itemTrip(kSummary, rawValue(itemtype::Number, QByteArray("abc"))), "300");
}

TEST_F(ItemExport, NumberPairsAreRaw) {
  QByteArray value("\x01\x03\x01\x00\x01\x00", 6);
  for (const double number : {7.0, 1.0, 2.0}) appendF64(value, number);
  expectRaw(itemTrip(kSummary, value), "301");
}

TEST_F(ItemExport, TimesKeepTheirZone) {
  expectElement(itemTrip(kSummary, timeValue(at(2024, 1, 31, 23, {60, false}))),
                "<datetime>20240201T000102,03+01</datetime>");
  expectElement(itemTrip(kSummary, timeValue(at(2024, 1, 31, 23, {-300, true}))),
                "<datetime dst=\"true\">20240131T190102,03-04</datetime>");
  expectElement(itemTrip(kSummary, timeValue(at(2024, 1, 31, 23, {345, false}))), "+0545<");
  expectElement(itemTrip(kSummary, timeValue(at(2024, 1, 31, 23, {-210, true}))), "-0230<");
}

TEST_F(ItemExport, DatesAndTimesAloneStayAlone) {
  expectElement(itemTrip(kSummary, timeValue(timeDateOfDate(QDate(1999, 7, 13)))),
                "<datetime>19990713</datetime>");
  expectElement(itemTrip(kSummary, timeValue(timeDateOfTime(QTime(3, 6, 52, 10)))),
                "<datetime>T030652,01</datetime>");
}

TEST_F(ItemExport, OddTimesAreRaw) {
  const TimeDate ordinary = at(2024, 1, 31, 23, {60, false});
  for (const TimeDate& time :
       {TimeDate{}, TimeDate{{kAllDay, kAnyDay}}, TimeDate{{8640000, ordinary.innards[1]}},
        TimeDate{{kAllDay, ordinary.innards[1]}}, TimeDate{{5, 0x40000000u | 2460000u}}, TimeDate{{5, 3u}},
        TimeDate{{5, 0xCF000000u | 2460000u}}, TimeDate{{9000000, kAnyDay}}})
    expectRaw(itemTrip(kSummary, timeValue(time)), "400");
  expectRaw(itemTrip(kSummary, timeListValue({ordinary, TimeDate{}})), "401");
}

TEST_F(ItemExport, TimeListsKeepPairs) {
  const TimeDate from = at(2024, 1, 31, 8, {60, false}), to = at(2024, 1, 31, 9, {60, false});
  const QByteArray dxl = itemTrip(kSummary, timeListValue({from}, {{from, to}}));
  expectElement(dxl, "<datetimelist><datetime>20240131T090102,03+01</datetime><datetimepair>");
  expectElement(itemTrip(kSummary, timeListValue({})), "<datetimelist/>");
}

TEST_F(ItemExport, FormulasAreSourceOrRaw) {
  expectElement(
      itemTrip(0, sourceFormulaValue(u"SELECT Form = \"Memo\" &\n\t@Contains(A; \"<\")\n")),
      "<formula>SELECT Form = &quot;Memo&quot; &amp;\n\t@Contains(A; &quot;&lt;&quot;)\n</formula>");
  expectElement(itemTrip(0, sourceFormulaValue(u"")), "<formula/>");
  expectRaw(itemTrip(0, rawValue(itemtype::Formula, QByteArray("\x04\x00\x01\x02", 4))), "600");
  expectRaw(itemTrip(0, rawValue(itemtype::Formula, {})), "600");
  // The bytes that other programs run stand where these look for them.
  for (const char* bytes :
       {"0a000000080089000300", "0a0000000800c1000300", "160009000c005a5a5a5a5a5a5a5a0400040004000400"}) {
    const QByteArray formula = QByteArray::fromHex(bytes);
    expectElement(itemTrip(0, rawValue(itemtype::Formula, formula)),
                  "<formula compiled=\"true\">\n" + formula.toBase64() + "\n</formula>");
  }
}

TEST_F(ItemExport, EveryOtherTypeIsRaw) {
  const QVector<quint16> types = {itemtype::Unknown,       itemtype::Collation,     itemtype::NoteRefs,
                                  itemtype::ViewFormat,    itemtype::Icon,          itemtype::NoteLinks,
                                  itemtype::Signature,     itemtype::UserData,      itemtype::Query,
                                  itemtype::Action,        itemtype::AssistantInfo, itemtype::Html,
                                  itemtype::OutlineFormat, itemtype::Error,         itemtype::Unavailable,
                                  itemtype::Rfc822Text,    itemtype::UserId,        quint16(0xFFFF)};
  Note note;
  for (const quint16 type : types)
    note.add(u"A"_s, 0, rawValue(type, QByteArray("\x00\x01\xFF some bytes", 14)));
  save(note);
  const QByteArray dxl = roundTrip();
  for (const quint16 type : types) expectRaw(dxl, QByteArray::number(type, 16));
}

TEST_F(ItemExport, RawValuesWhoseCountsLeadOutsideAreTakenBackAsTheyWere) {
  Note note;
  for (const quint16 type : {itemtype::TextList, itemtype::NumberRange, itemtype::TimeRange,
                             itemtype::NoteRefs, itemtype::MimePart, itemtype::RichText})
    note.add(QString::number(type), 0, rawValue(type, QByteArray("\x85\xFF\x70\x00\x01", 5)));
  save(note);
  EXPECT_EQ(roundTrip().count("asstored"), 6);
}

TEST_F(ItemExport, PlaceholdersAreEmpty) {
  expectRaw(itemTrip(itemflag::Placeholder, rawValue(itemtype::Unknown, {})), "0");
}

TEST_F(ItemExport, LongRawValuesStandInLines) {
  const QByteArray dxl = itemTrip(0, rawValue(itemtype::UserData, QByteArray(200, 'x')));
  const QList<QByteArray> lines = dxl.split('\n');
  const auto full = std::count_if(lines.begin(), lines.end(), [](const QByteArray& line) {
    return line.size() == 76 && line.startsWith("eHh4");
  });
  EXPECT_EQ(full, 3);
}

TEST_F(ItemExport, EverySingleFlagComesBack) {
  QVector<quint16> all = {0, 0x64, 0x464, 0x60, 0xFFFF, 0x1347};
  for (int bit = 0; bit < 16; ++bit) all.push_back(quint16(1 << bit));
  Note note;
  for (const quint16 flags : all) {
    note.add(u"A"_s, flags, textValue(u"x"));
    note.add(u"B"_s, flags, textListValue({u"x"_s}));
    note.add(u"C"_s, flags, rawValue(itemtype::UserData, QByteArray("x")));
  }
  save(note);
  roundTrip();
}

TEST_F(ItemExport, FlagsHaveTheNamesThatReadersKnow) {
  const QByteArray dxl = itemTrip(0x1747 | itemflag::Authors, textValue(u"x"));
  for (const char* name :
       {"summary", "sign", "seal", "names", "authors", "readers", "protected", "placeholder", "unchanged"})
    EXPECT_TRUE(dxl.contains(" " + QByteArray(name) + "=\"true\"")) << name;
  EXPECT_FALSE(dxl.contains("itemflags"));
  EXPECT_TRUE(itemTrip(0, textValue(u"x")).contains("<item name=\"A\" summary=\"false\">"));
}

TEST_F(ItemExport, OddItemNamesComeBack) {
  for (const QString& name :
       {u"<&\"'>"_s, u" a b "_s, u"tab\tand\nline\rend"_s, u"Größe \U0001F600"_s, u""_s, u"bell\a\u0001"_s,
        QString(QChar(0)), u"\uFFFE%41"_s, u"%41"_s, u"$FILE"_s, u"$DXL_field"_s})
    itemTrip(kSummary, textValue(u"x"), name);
}

TEST_F(ItemExport, ItemsKeepTheirOrderAndTheirRepetitions) {
  Note note;
  for (const char16_t* name : {u"B", u"A", u"B", u"b", u"Form", u"A", u"$UpdatedBy", u"$Revisions", u"Form"})
    note.add(QString::fromUtf16(name), kSummary, textValue(name));
  save(note);
  roundTrip();
}

TEST_F(ItemExport, WhatAnImportKeptAsXmlComesBackAsItems) {
  Note note;
  note.add(u"$DXL_button"_s, 0, storedTextValue(u"<button width=\"1in\">\n<run>Go</run></button>"));
  note.add(u"$DXL_truncated"_s, 0, textValue(u"true"));
  save(note);
  roundTrip();
}

// A writer that has met one character too many writes nothing more.
TEST(DxlText, OfAnyUnitsIsTaken) {
  QBuffer target;
  target.open(QIODevice::WriteOnly);
  DxlWriter out(target);
  out.beginRoot(u"database"_s);
  for (int unit = 0; unit < 0x10000; ++unit) {
    const QString text = QString(QChar(char16_t(unit))) + u'a';
    out.begin(u"a"_s);
    out.attribute(u"b"_s, text);
    out.exactAttribute(u"c"_s, text);
    out.lines(text);
    out.literal(text);
    out.end();
    ASSERT_NO_THROW(out.check()) << std::hex << unit;
  }
}

}  // namespace
}  // namespace lens
