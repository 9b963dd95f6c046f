// The writers: text for people, JSON for programs, CSV for spreadsheets.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QTimeZone>
#include <cmath>
#include <limits>

#include "command/command_console.h"
#include "command/output.h"
#include "command/text_output.h"
#include "notes/literals.h"
#include "records/csv_output.h"
#include "records/json_output.h"
#include "support/in_zone.h"
#include "support/printers.h"

namespace lens {
namespace {

QString printable(QStringView text) {
  QByteArray line;
  appendPrintable(line, text);
  return QString::fromUtf8(line);
}

TEST(TextOutput, ShowsWhatATerminalWouldObeyAsAMark) {
  EXPECT_EQ(printable(u"plain \u00E4\u20AC"), u"plain \u00E4\u20AC"_s);
  EXPECT_EQ(printable(u"a\r\nb\nc\td"), u"a b c d"_s);
  EXPECT_EQ(printable(u"\u001B[31mred\u0007\u009B2J\u007F"), u"\uFFFD[31mred\uFFFD\uFFFD2J\uFFFD"_s);
  EXPECT_EQ(printable(u"exe.\u202Efdp"), u"exe.\uFFFDfdp"_s);
  EXPECT_EQ(printable(u"one\u2028two"), u"one two"_s);
  EXPECT_EQ(printable(QString(QChar(0xD83D))), u"?"_s);
}

TEST(TextOutput, ShowsTheSameFromBytes) {
  for (const QString& text : {u"plain"_s, u"\u00E4\u001Bx"_s, u""_s, u"a\nb"_s}) {
    QByteArray line;
    appendPrintableUtf8(line, text.toUtf8());
    EXPECT_EQ(QString::fromUtf8(line), printable(text));
  }
}

TEST(TextOutput, FillsColumnsAndCutsNothing) {
  QByteArray line;
  appendColumn(line, u"ab", 4);
  appendColumn(line, u"\u00E4bcdef", 4);
  EXPECT_EQ(QString::fromUtf8(line), u"ab    \u00E4bcdef  "_s);
}

TEST(TextOutput, MovesFurtherLinesIn) {
  QByteArray out("x ");
  appendLines(out, u"one\r\ntwo\n\u001Bthree", 2);
  EXPECT_EQ(QString::fromUtf8(out), u"x one\n  two\n  \uFFFDthree"_s);
}

TEST(TextOutput, WritesNoteIdsWithEightDigits) {
  QByteArray line;
  appendEightDigits(line, 0x8FA);
  appendEightDigits(line, 0xFFFF0010);
  EXPECT_EQ(line, "000008FAFFFF0010");
}

TEST(TextOutput, CountsInWords) {
  EXPECT_EQ(counted(1, u"note"_s, u"notes"_s), u"1 note"_s);
  EXPECT_EQ(counted(0, u"note"_s, u"notes"_s), u"0 notes"_s);
}

TEST(JsonOutput, EscapesWhatJsonEscapes) {
  QByteArray json;
  appendJsonString(json, u"a\"b\\c\nd\te\u0001\u007F\u00E4\u2028");
  EXPECT_EQ(QString::fromUtf8(json), u"\"a\\\"b\\\\c\\nd\\u0009e\\u0001\\u007f\u00E4\u2028\""_s);
}

TEST(JsonOutput, KeepsKeysInTheirOrderAndNestsArraysAndObjects) {
  JsonLine json;
  json.text("z", u"1").number("a", -2).flag("yes", true).texts("list", {u"x"_s, u"y"_s}).texts("none", {});
  json.beginArray("items").beginObject().text("n", u"i").end().beginObject().end().end().flag("no", false);
  EXPECT_EQ(json.finish(),
            R"({"z":"1","a":-2,"yes":true,"list":["x","y"],"none":[],"items":[{"n":"i"},{}],"no":false})");
}

TEST(JsonOutput, ClosesWhatIsOpen) {
  JsonLine json;
  json.beginArray("a").beginObject().text("b", u"c");
  EXPECT_EQ(json.finish(), R"({"a":[{"b":"c"}]})");
}

TEST(JsonOutput, WritesNumbersWholeAndWhatIsNoneAsNull) {
  JsonLine json;
  json.beginArray("n");
  for (const double number :
       {1.0, 0.1, 1.0 / 3, 1e300, -0.5, std::nan(""), std::numeric_limits<double>::infinity()})
    json.element(number);
  EXPECT_EQ(json.finish(), R"({"n":[1,0.1,0.3333333333333333,1e+300,-0.5,null,null]})");
}

TEST(JsonOutput, WritesDatesWithTheirDistanceFromGreenwich) {
  const InZone zone("Europe/Berlin");
  const QDate summer(2026, 7, 1), winter(2026, 11, 22);
  EXPECT_EQ(isoText({winter, QTime(10, 50, 55)}), u"2026-11-22T10:50:55+01:00"_s);
  EXPECT_EQ(isoText({summer, QTime(0, 0)}), u"2026-07-01T00:00:00+02:00"_s);
  EXPECT_EQ(isoText({winter, QTime(10, 50, 55, 120)}), u"2026-11-22T10:50:55.120+01:00"_s);
  EXPECT_EQ(isoText({winter, QTime()}), u"2026-11-22"_s);
  EXPECT_EQ(isoText({QDate(), QTime(9, 5)}), u"09:05:00"_s);
  EXPECT_EQ(isoText({}), QString());
}

TEST(JsonOutput, WritesDistancesWestOfGreenwichAndHalfHours) {
  const InZone zone("America/St_Johns");
  EXPECT_EQ(isoText({QDate(2026, 11, 22), QTime(10, 0)}), u"2026-11-22T10:00:00-03:30"_s);
}

TEST(CsvOutput, QuotesWhatWouldPartCells) {
  CsvRow row;
  for (const QString& cell : {u"a"_s, u"b,c"_s, u"say \"x\""_s, u"two\nlines"_s, u" blank"_s, u""_s})
    row.text(cell);
  row.number(-1.5);
  row.empty();
  EXPECT_EQ(row.finish(), "a,\"b,c\",\"say \"\"x\"\"\",\"two\nlines\",\" blank\",,-1.5,\r\n");
  EXPECT_EQ(row.madeSafe(), 0);
}

TEST(CsvOutput, MakesCellsSafeThatASpreadsheetWouldRun) {
  CsvRow row;
  for (const QString& cell :
       {u"=1+1"_s, u"+1"_s, u"-1"_s, u"@SUM(A1)"_s, u"\t=1"_s, u"\r=1"_s, u"\uFF1D1"_s, u"a=1"_s, u"'=1"_s})
    row.text(cell);
  EXPECT_EQ(QString::fromUtf8(row.finish()),
            u"'=1+1,'+1,'-1,'@SUM(A1),'\t=1,\"'\r=1\",'\uFF1D1,a=1,'=1\r\n"_s);
  EXPECT_EQ(row.madeSafe(), 7);
}

TEST(CsvOutput, BeginsEachRowAnew) {
  CsvRow row;
  row.empty();
  row.text(u"x");
  EXPECT_EQ(row.finish(), ",x\r\n");
  row.text(u"y");
  EXPECT_EQ(row.finish(), "y\r\n");
}

// Takes so many bytes, and at most so many at once.
class ShortDevice : public QIODevice {
 public:
  explicit ShortDevice(qint64 most, qint64 atOnce = 1 << 20) : left_(most), atOnce_(atOnce) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  }
  QByteArray taken;
  int calls = 0;

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override {
    ++calls;
    const qint64 some = qMin(qMin(size, left_), atOnce_);
    if (some == 0) {
      setErrorString(u"No space left"_s);
      return -1;
    }
    taken.append(bytes, some);
    left_ -= some;
    return some;
  }

 private:
  qint64 left_, atOnce_;
};

TEST(OutputTest, HandsOnInLargePieces) {
  ShortDevice device(1 << 20);
  Output out(device, u"here"_s);
  for (int i = 0; i < 1000; ++i) out.line("a line");
  EXPECT_EQ(device.calls, 0);
  out.flush();
  EXPECT_EQ(device.taken.size(), 7000);
  EXPECT_EQ(device.calls, 1);
}

TEST(OutputTest, HandsOnEachLineWhereAPersonLooksOn) {
  ShortDevice device(1 << 20);
  Output out(device, u"here"_s);
  int shown = 0;
  out.showEachLine([&] { ++shown; });
  out.line("one");
  EXPECT_EQ(device.taken, "one\n");
  EXPECT_EQ(shown, 1);
}

// Lines and progress on one terminal do not run into each other.
TEST(ConsoleTest, ProgressIsGoneBeforeALineIsWritten) {
  QBuffer terminal;
  terminal.open(QIODevice::WriteOnly);
  {
    Console console({&terminal, &terminal, nullptr, true, true, {}, 0});
    console.progress(u"work"_s, 1, 2);
    console.out().line("a row");
    console.out().line("another");
    console.progress(u"work\u001B"_s, 0, 0);
    console.say(u"told"_s);
    console.progress(u"end"_s, 0, 0);
  }
  const QByteArray erase = "\r\033[K";
  EXPECT_EQ(terminal.data(), erase + "work: 50 %" + erase + "a row\nanother\n" + erase + "work\xEF\xBF\xBD" +
                                 erase + "told\n" + erase + "end" + erase);
}

TEST(ConsoleTest, ProgressComesNowAndThenAndNeverToAFile) {
  QBuffer out, error;
  for (QBuffer* buffer : {&out, &error}) buffer->open(QIODevice::WriteOnly);
  Console rarely({&out, &error, nullptr, false, true, {}, 3'600'000});
  rarely.progress(u"work"_s, 1, 2);
  Console never({&out, &error, nullptr, true, false, {}, 0});
  never.progress(u"work"_s, 1, 2);
  EXPECT_EQ(out.data() + error.data(), QByteArray());
}

TEST(OutputTest, GoesOnWhereAReceiverTakesALittleAtOnce) {
  ShortDevice device(1 << 20, 10);
  Output out(device, u"here"_s);
  out.write(QByteArray(95, 'x'));
  out.flush();
  EXPECT_EQ(device.taken.size(), 95);
}

TEST(OutputTest, RaisesWithNameAndReasonAndOffersNothingTwice) {
  ShortDevice device(4);
  Output out(device, u"here"_s);
  out.line("longer than four");
  try {
    out.flush();
    ADD_FAILURE() << "nothing was raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::DeviceFault);
    EXPECT_EQ(error.description(), u"here: No space left"_s);
  }
  const int calls = device.calls;
  EXPECT_FALSE(out.take(QByteArray(100'000, 'x')));
  EXPECT_THROW(out.requireWhole(), RuntimeError);
  EXPECT_EQ(device.calls, calls);
}

TEST(OutputTest, AsADeviceTellsWritersOfFilesThatItIsFull) {
  ShortDevice device(100'000);
  Output out(device, u"here"_s);
  OutputDevice file(out);
  EXPECT_EQ(file.write(QByteArray(70'000, 'x')), 70'000);
  EXPECT_EQ(file.write(QByteArray(70'000, 'x')), -1);
  EXPECT_EQ(file.errorString(), u"No space left"_s);
}

}  // namespace
}  // namespace lens
