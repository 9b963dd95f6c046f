// The text of the content box as a formula: checked, and run over the current document.
#include <QFile>

#include "design/tools_fixture.h"
#include "embedded/format/lmbcs.h"
#include "embedded/formula/formula.h"
#include "notes/code_page.h"

namespace lens {
namespace {

const QString kEnd = QStringLiteral("\r\n");
constexpr quint32 kRed = 255;

class FormulaCheck : public ToolsTest {
 protected:
  FormulaCheck() { startOnDatabase(); }

  QString check(const QString& formula) {
    setText("txtFieldContent", formula);
    host.boxes.clear();
    press("cmdChkFormula");
    return content();
  }
  // What stands below the formula after the check.
  QStringList answers(const QString& formula) {
    const QString text = check(formula);
    EXPECT_TRUE(text.startsWith(formula)) << text.toStdString();
    if (text == formula) return {};
    EXPECT_TRUE(text.mid(formula.size()).startsWith(kEnd));
    return text.mid(formula.size() + kEnd.size()).split(kEnd);
  }
  RichTextBox& box() { return control<RichTextBox>("txtFieldContent"); }
  // Start and length of the red stretch; the rest must be black.
  QPair<int, int> redStretch() {
    int start = -1, length = 0;
    for (int at = 0; at < box().length(); ++at) {
      if (box().colorAt(at) != kRed) continue;
      if (start < 0) start = at;
      length = at - start + 1;
    }
    for (int at = start; at < start + length; ++at) EXPECT_EQ(box().colorAt(at), kRed);
    return {start, length};
  }
  static ShownBox faultBox(const QString& reason, int start, int end) {
    return {u"%1\nError starts at character: %2 and ends at character: %3"_s.arg(reason).arg(start).arg(end),
            box::Plain, u"Formula error!"_s};
  }
  // The document becomes the current one.
  NoteId show(Note note) {
    const NoteId id = save(note);
    state().gDoc = documentObject(id);
    notes().log.clear();
    return id;
  }
  static Note order() {
    Note note = document(u"Order"_s);
    note.add(u"Customer"_s, itemflag::Summary, textValue(u"Größe & Co"));
    note.add(u"Amounts"_s, itemflag::Summary, numberListValue({1.5, 2}));
    return note;
  }
  bool canSearch(const QString& formula) {
    try {
      state().gDb.search(formula, 0);
      return true;
    } catch (const RuntimeError&) {
      return false;
    }
  }
  int librarysCalls(const QString& function) { return int(capi().log.filter(function).size()); }
};

// --- results ---

TEST_F(FormulaCheck, TextsOfAListComeBelowTheFormula) {
  EXPECT_EQ(check(u"\"a\":\"b\""_s), u"\"a\":\"b\"\r\na\r\nb"_s);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FormulaCheck, NumbersHaveTheirUsualText) {
  EXPECT_EQ(answers(u"1/3"_s), QStringList(u"0.333333333333333"_s));
  EXPECT_EQ(answers(u"1.5 : (-2) : (1000000 * 1000000000)"_s), QStringList({u"1.5"_s, u"-2"_s, u"1E+15"_s}));
}

TEST_F(FormulaCheck, AnEmptyTextIsOneEmptyLine) {
  EXPECT_EQ(answers(u"\"\""_s), QStringList(QString()));
}

TEST_F(FormulaCheck, ADateIsOneEmptyLine) {
  EXPECT_EQ(answers(u"@Today"_s), QStringList(QString()));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FormulaCheck, AFormulaThatFailsWhenItRunsIsOneEmptyLine) {
  EXPECT_EQ(answers(u"1/\"a\""_s), QStringList(QString()));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FormulaCheck, LettersOfTheCodePageComeBack) {
  EXPECT_EQ(answers(u"\"Größe €\" : @UpperCase(\"é\")"_s), QStringList({u"Größe €"_s, u"É"_s}));
}

TEST_F(FormulaCheck, AResultOfSeveralLinesIsShownWhole) {
  EXPECT_EQ(answers(u"\"Street 1\" + @NewLine + \"Town\""_s), QStringList({u"Street 1"_s, u"Town"_s}));
  EXPECT_EQ(answers(u"@NewLine + \"a\" + @NewLine + @NewLine : \"b\""_s),
            QStringList({QString(), u"a"_s, QString(), QString(), QString(), u"a"_s, u"b"_s}));
  Note note = document(u"Person"_s);
  note.add(u"Address"_s, itemflag::Summary, textValue(withStoredBreaks(u"Größe 1\nTown"_s)));
  show(note);
  EXPECT_EQ(answers(u"Address"_s), QStringList({u"Größe 1"_s, u"Town"_s}));
}

TEST_F(FormulaCheck, LettersBeyondTheCodePageAreQuestionMarks) {
  EXPECT_EQ(answers(u"\"日本\" : \"ok\""_s), QStringList({u"??"_s, u"ok"_s}));
}

TEST_F(FormulaCheck, EachLineOfTheAnswerHasAPageInTheHistory) {
  setText("txtFieldContent", QString());
  state().gContentPages.clear();
  check(u"\"a\":\"b\""_s);
  EXPECT_EQ(state().gContentPages,
            QStringList({u"\"a\":\"b\""_s, u"\"a\":\"b\"\r\na"_s, u"\"a\":\"b\"\r\na\r\nb"_s}));
}

TEST_F(FormulaCheck, ThousandsOfLinesHaveOnePage) {
  state().gContentPages.clear();
  const QString formula = u"@Explode(@Repeat(\"x;\"; 500); \";\") *+ (\"a\" : \"b\" : \"c\")"_s;
  EXPECT_EQ(answers(formula).size(), 1500);
  EXPECT_EQ(state().gContentPages.size(), 2);
}

// --- the document ---

TEST_F(FormulaCheck, RunsOverTheCurrentDocument) {
  show(order());
  EXPECT_EQ(answers(u"Customer : @Text(@Sum(Amounts))"_s), QStringList({u"Größe & Co"_s, u"3.5"_s}));
}

TEST_F(FormulaCheck, WithoutADocumentItemsAreEmpty) {
  EXPECT_EQ(answers(u"Customer"_s), QStringList(QString()));
  EXPECT_FALSE(capi().log.join(u' ').contains(u"NSFDbOpen"_s));
}

TEST_F(FormulaCheck, ADocumentWithoutAnIdIsLeftAside) {
  show(order());
  notes().replies.insert(u"NOTEID"_s, QString());
  capi().log.clear();
  EXPECT_EQ(answers(u"Customer : \"x\""_s), QStringList({QString(), u"x"_s}));
  EXPECT_FALSE(capi().log.contains(u"NSFDbOpen"_s));
}

TEST_F(FormulaCheck, ADocumentThatCannotTellItsIdIsLeftAside) {
  show(order());
  notes().failing.insert(u"NOTEID"_s, RuntimeError(70));
  EXPECT_EQ(answers(u"Customer : \"x\""_s), QStringList({QString(), u"x"_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FormulaCheck, WritesNothingIntoTheDocument) {
  const NoteId id = show(order());
  EXPECT_EQ(answers(u"FIELD Customer := \"new\"; Customer"_s), QStringList(u"new"_s));
  Note stored;
  ASSERT_TRUE(database->notes().read(id, stored));
  EXPECT_EQ(stored.text(u"Customer"), u"Größe & Co"_s);
}

TEST_F(FormulaCheck, ADatabaseThatCannotBeOpenedAnswersNothing) {
  show(order());
  notes().replies.insert(u"FILEPATH"_s, u"gone.nsf"_s);
  capi().log.clear();
  EXPECT_EQ(answers(u"\"x\""_s), QStringList());
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_FALSE(capi().log.contains(u"NSFDbClose 0"_s));
  EXPECT_EQ(capi().log.last(), u"NotesTerm"_s);
  EXPECT_EQ(engineCapi->openHandles(), 0);
  notes().replies.clear();
  EXPECT_EQ(answers(u"\"x\""_s), QStringList(u"x"_s)) << "and the next check works";
}

TEST_F(FormulaCheck, ANoteThatIsGoneAnswersNothing) {
  const NoteId id = show(order());
  database->notes().remove(id);
  notes().replies.insert(u"NOTEID"_s, QString::number(id.value(), 16));
  capi().log.clear();
  EXPECT_EQ(answers(u"\"x\""_s), QStringList());
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(capi().log.mid(capi().log.size() - 2), QStringList({u"NSFDbClose"_s, u"NotesTerm"_s}));
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

// --- mistakes ---

TEST_F(FormulaCheck, AMistakeIsMarkedRedAndTold) {
  const QString formula = u"\"ab\" \"x\""_s;
  EXPECT_EQ(check(formula), formula);
  const QString reason = app->routines.GetAPIError(0x050B);
  EXPECT_FALSE(reason.isEmpty());
  EXPECT_EQ(host.boxes, ShownBoxes({faultBox(reason, 5, 8)}));
  EXPECT_EQ(redStretch(), qMakePair(5, 3));
  EXPECT_EQ(box().selStart(), 5);
  EXPECT_EQ(box().selLength(), 3);
  EXPECT_FALSE(capi().log.contains(u"NSFComputeStart"_s));
}

TEST_F(FormulaCheck, LettersOfTheCodePageMoveNoMark) {
  for (const QString& line : {QString(), u"1;\r\n"_s}) {
    check(line + u"\"ab\" \"x\"");
    const ShownBoxes plain = host.boxes;
    const auto stretch = redStretch();
    EXPECT_EQ(stretch, qMakePair(int(line.size()) + 5, 3));
    for (const QString& letters : {u"éü"_s, u"日本"_s, u"😀"_s}) {
      check(line + u"\"" + letters + u"\" \"x\"");
      EXPECT_EQ(host.boxes, plain) << letters.toStdString();
      EXPECT_EQ(redStretch(), stretch) << letters.toStdString();
    }
  }
}

// What passes the check is a formula for the search too, and what does not is none for either, whatever
// character of the code page stands in a name, in a text or between them. The mark is where the search finds
// the fault.
TEST_F(FormulaCheck, AgreesWithTheSearchAboutEveryCharacterOfTheCodePage) {
  memo();
  for (int byte = 0; byte < 256; ++byte) {
    const QString unit = fromCodePage(QByteArray(1, char(byte)));
    for (const QString& formula :
         {QString(u"SELECT a"_s + unit + u"b = 1"), QString(unit + u"ab := \"x\"; SELECT @All"),
          QString(u"SELECT Form = \"a"_s + unit + u"b\""), QString(u"SELECT"_s + unit + u"Form = \"Memo\""),
          QString(u"SELECT Form = \"Memo\""_s + unit + u"| 1 2")}) {
      check(formula);
      const formula::Compiled searched = formula::compile(formula, {});
      EXPECT_EQ(host.boxes.isEmpty(), canSearch(formula)) << byte << ' ' << formula.toStdString();
      if (searched) continue;
      ASSERT_EQ(host.boxes.size(), 1) << byte;
      EXPECT_EQ(box().selStart(), qMin(searched.error.offset, int(formula.size()))) << byte;
      EXPECT_EQ(host.boxes[0].text,
                faultBox(app->routines.GetAPIError(Status(searched.error.reason)), searched.error.offset,
                         searched.error.offset + searched.error.length)
                    .text)
          << byte;
    }
  }
}

TEST_F(FormulaCheck, EveryCharacterOfTheCodePageComesBackFromTheEvaluation) {
  for (int byte = 1; byte < 256; ++byte) {
    const QString unit = fromCodePage(QByteArray(1, char(byte)));
    if (unit == u"\"" || unit == u"\\") continue;
    const QString formula = u"\"a"_s + unit + u"b\"";
    const QString shown = unit == u"\n" ? kEnd : unit;
    EXPECT_EQ(check(formula), formula + kEnd + u'a' + shown + u'b') << byte;
  }
}

TEST_F(FormulaCheck, AMistakeIsToldWithADocumentToo) {
  show(order());
  check(u"@Lefft(Customer; 2)"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0], faultBox(app->routines.GetAPIError(0x051B), 0, 6));
  EXPECT_EQ(redStretch(), qMakePair(0, 6));
}

TEST_F(FormulaCheck, AMistakeKeepsTheSelectionVisibleWhereTheTextEnds) {
  check(u"1 +"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Formula error!"_s);
  EXPECT_LE(box().selStart() + box().selLength(), 3);
}

TEST_F(FormulaCheck, TheColourGoesWithTheNextText) {
  check(u"1 2"_s);
  EXPECT_GE(redStretch().first, 0);
  setText("txtFieldContent", u"1 2"_s);
  EXPECT_EQ(redStretch(), qMakePair(-1, 0));
}

// An empty box is no formula: whatever the library says of it, there is one box or one line.
TEST_F(FormulaCheck, AnEmptyBoxIsCheckedAsItIs) {
  check(QString());
  EXPECT_EQ(librarysCalls(u"NSFFormulaCompile"_s), host.boxes.isEmpty() ? 2 : 1);
}

TEST_F(FormulaCheck, OtherFailuresOfTheCompilerCountAsClean) {
  class Unwilling : public ForwardingCApi {
   public:
    using ForwardingCApi::ForwardingCApi;
    Status NSFFormulaCompile(const QByteArray&, quint16, MemHandle& compiled, quint16& length, Status& error,
                             quint16& line, quint16& column, quint16& offset, quint16& errorLength) override {
      compiled = 0;
      length = line = column = 0;
      error = offset = errorLength = 7;
      return 0x0107;
    }
  } library(*engineCapi);
  Desk desk = deskWith(library);
  FormulaTools tools(desk);
  const FormulaTools::CompileReport report = tools.CheckFormula(u"1 +"_s);
  EXPECT_EQ(report.error, 0);
  EXPECT_EQ(report.offset, 0);
  EXPECT_EQ(report.length, 0);
  setText("txtFieldContent", u"1 +"_s);
  tools.cmdChkFormula_Click();
  EXPECT_EQ(content(), u"1 +\r\n"_s);
  EXPECT_EQ(boxes(), QStringList());
}

// --- limits ---

QString ofLength(int length) {
  return u"\"" + QString(length - 2, u'x') + u"\"";
}

TEST_F(FormulaCheck, TheLongestTextIsChecked) {
  EXPECT_EQ(app->formulaTools.CheckFormula(ofLength(32'767)).error, 0);
  try {
    app->formulaTools.CheckFormula(ofLength(32'768));
    ADD_FAILURE() << "nothing raised";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::Overflow);
  }
  EXPECT_EQ(librarysCalls(u"NotesInitExtended"_s), librarysCalls(u"NotesTerm"_s));
}

TEST_F(FormulaCheck, AMistakeAtTheEndOfTheLongestTextIsMarked) {
  const QString formula = ofLength(32'763) + u" \"x\""_s;
  ASSERT_EQ(formula.size(), 32'767);
  check(formula);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u"starts at character: 32764 and ends at character: 32767"_s))
      << host.boxes[0].text.toStdString();
  EXPECT_EQ(redStretch(), qMakePair(32'764, 3));
}

TEST_F(FormulaCheck, ATextBeyondTheLimitEndsInTheReportWithADocumentToo) {
  for (const bool withDocument : {false, true}) {
    if (withDocument) show(order());
    EXPECT_EQ(check(ofLength(32'768)), ofLength(32'768));
    EXPECT_EQ(host.boxes, ShownBoxes({report(err::Overflow)})) << withDocument;
  }
}

// The change of character set has a buffer of twice the text, whose length has 16 bits as well.
TEST_F(FormulaCheck, ATextTooLongToBeConvertedIsToldOnlyWithoutADocument) {
  const QString fits = u"@Length(" + ofLength(16'374) + u")";
  ASSERT_EQ(fits.size(), 16'383);
  EXPECT_EQ(answers(fits), QStringList(u"16372"_s));
  for (const int length : {16'384, 32'767}) {
    state().gDoc.release();
    EXPECT_EQ(check(ofLength(length)), ofLength(length));
    EXPECT_EQ(host.boxes, ShownBoxes({report(err::Overflow)})) << length;
    show(order());
    EXPECT_EQ(check(ofLength(length)), ofLength(length));
    EXPECT_EQ(host.boxes, ShownBoxes()) << length;
  }
}

// The check sees all of the text, the evaluation only what stands before the NUL.
TEST_F(FormulaCheck, ANulIsAMistakeAndEndsWhatIsEvaluated) {
  const QString formula = u"\"a\""_s + QChar(0) + u" : \"b\"";
  EXPECT_EQ(check(formula), formula);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].title, u"Formula error!"_s);
  EXPECT_EQ(redStretch(), qMakePair(3, 1));
  const FormulaTools::Results results = app->formulaTools.EvaluateFormula(QString(), formula);
  ASSERT_TRUE(results);
  EXPECT_EQ(*results, QVector<Value>({Value(u"a"_s)}));
  EXPECT_NE(app->formulaTools.CheckFormula(QString(1000, QChar(0))).error, 0);
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

TEST_F(FormulaCheck, TheResultOfTheEvaluationHasAlwaysAnElement) {
  for (const QString& formula : {u"\"\""_s, u"@Today"_s, u"1/\"a\""_s, u"\"a\" +"_s, QString()}) {
    const FormulaTools::Results results = app->formulaTools.EvaluateFormula(QString(), formula);
    ASSERT_TRUE(results) << formula.toStdString();
    EXPECT_EQ(*results, QVector<Value>({Value(QString())})) << formula.toStdString();
  }
}

// --- the library ---

TEST_F(FormulaCheck, TheLibraryIsCalledInItsOrder) {
  capi().log.clear();
  check(u"\"a\":\"b\""_s);
  EXPECT_EQ(capi().log, QStringList({u"NotesInitExtended"_s,  u"NSFFormulaCompile"_s, u"OSMemFree"_s,
                                     u"NotesTerm"_s,          u"OSTranslate"_s,       u"NotesInitExtended"_s,
                                     u"NSFFormulaCompile"_s,  u"OSLockObject"_s,      u"NSFComputeStart"_s,
                                     u"NSFComputeEvaluate"_s, u"OSLockObject"_s,      u"ListGetNumEntries"_s,
                                     u"ListGetText"_s,        u"OSTranslate"_s,       u"ListGetText"_s,
                                     u"OSTranslate"_s,        u"ListGetText"_s,       u"NSFComputeStop"_s,
                                     u"OSUnlockObject"_s,     u"OSMemFree"_s,         u"OSUnlockObject"_s,
                                     u"OSMemFree"_s,          u"NSFDbClose 0"_s,      u"NotesTerm"_s}));
}

TEST_F(FormulaCheck, TheDocumentsDatabaseIsOpenedBehindTheCompiler) {
  show(order());
  capi().log.clear();
  check(u"1"_s);
  const QStringList order = {u"NSFFormulaCompile"_s,  u"OSPathNetConstruct"_s, u"NSFDbOpen"_s,
                             u"NSFNoteOpen"_s,        u"OSLockObject"_s,       u"NSFComputeStart"_s,
                             u"NSFComputeEvaluate"_s, u"OSLockObject"_s,       u"NSFComputeStop"_s};
  EXPECT_EQ(capi().log.mid(capi().log.lastIndexOf(u"NSFFormulaCompile"_s), order.size()), order);
  EXPECT_FALSE(capi().log.contains(u"NSFNoteClose"_s));
  EXPECT_EQ(capi().log.mid(capi().log.size() - 2), QStringList({u"NSFDbClose"_s, u"NotesTerm"_s}));
}

TEST_F(FormulaCheck, TheDatabaseOfTheDocumentIsThatOfAServerToo) {
  openDatabase(u"far.nsf"_s, u"CN=Hub/O=Acme"_s);
  state().gDb = databaseObject();
  show(order());
  EXPECT_EQ(answers(u"Customer"_s), QStringList(u"Größe & Co"_s));
}

// --- a failure in every place ---

TEST_F(FormulaCheck, AnyFailureOfTheLibraryEndsInTheReportWithoutADocument) {
  const int runs = pressWithEveryFault(
      "cmdChkFormula", Door::Library, [this] { setText("txtFieldContent", u"\"a\":\"b\""_s); },
      [this](int n, const QString& call) -> ShownBoxes {
        EXPECT_TRUE(content().startsWith(u"\"a\":\"b\""_s));
        // Entries of a list are read on, and what was read is shown whatever is released behind them.
        const bool readsEntries = n >= 13 && n <= 17;
        if (n > 17 || call == u"NotesTerm") {
          EXPECT_EQ(content(), u"\"a\":\"b\"\r\na\r\nb"_s) << call.toStdString();
          return {};
        }
        if (readsEntries) return {};
        EXPECT_EQ(content(), u"\"a\":\"b\""_s) << call.toStdString();
        return {report(453)};
      });
  EXPECT_EQ(runs, 24);
}

TEST_F(FormulaCheck, WithADocumentOnlyFailuresOfTheCheckAreTold) {
  show(order());
  const auto prepare = [this] { setText("txtFieldContent", u"1"_s); };
  const int calls =
      pressWithEveryFault("cmdChkFormula", Door::Library, prepare, [](int n, const QString&) -> ShownBoxes {
        const bool checks = n <= 3;
        return checks ? ShownBoxes{report(453)} : ShownBoxes();
      });
  EXPECT_GT(calls, 15);
  const int members = pressWithEveryFault("cmdChkFormula", Door::ObjectModel, prepare,
                                          [](int, const QString&) { return ShownBoxes(); });
  EXPECT_EQ(members, 5);
}

TEST_F(FormulaCheck, ATextOfAMistakeThatCannotBeReadIsLeftOut) {
  const QString reason = app->routines.GetAPIError(0x050B);
  const int runs = pressWithEveryFault(
      "cmdChkFormula", Door::Library, [this] { setText("txtFieldContent", u"1 2"_s); },
      [&](int n, const QString& call) -> ShownBoxes {
        const ShownBox told = faultBox(QString(), 2, 3);
        if (n <= 2) return {report(453)};
        if (call == u"NotesTerm") return {faultBox(reason, 2, 3)};
        return {{u"Error 453 ("_s + standardErrorText(453) + u") in procedure GetAPIError of Modul Globals",
                 box::Plain,
                 {}},
                told};
      });
  EXPECT_EQ(runs, 6);
}

}  // namespace
}  // namespace lens
