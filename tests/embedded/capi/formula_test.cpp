#include <gtest/gtest.h>

#include <cstring>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/formula.h"
#include "embedded/model/support/test_workspace.h"
#include "notes/code_page.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct Compile {
  Status status = 0, error = 0;
  MemHandle handle = 0;
  quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
};

struct Formulas : ::testing::Test {
  Formulas() : api(t.workspace) {
    id = t.add({{u"Form"_s, textValue(u"Memo")},
                {u"Subject"_s, textValue(u"Größe")},
                {u"Amounts"_s, numberListValue({1.5, 2})},
                {u"Body"_s, richValue(u"text"_s), 0}});
    api.NotesInitExtended(0, "");
  }

  Compile compile(const QByteArray& formula) {
    Compile c;
    c.status = api.NSFFormulaCompile(formula, quint16(formula.size()), c.handle, c.length, c.error, c.line,
                                     c.column, c.offset, c.errorLength);
    return c;
  }

  // In the stored character set, as OSTranslate makes it from UTF-8.
  QByteArray translated(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    QByteArray target(utf8.size() * 3, ' ');
    return target.first(api.OSTranslate(24, utf8, quint16(utf8.size()), target, quint16(target.size())));
  }

  // The result block, empty when there is none; the status is kept.
  QByteArray evaluate(const QString& formula, NoteHandle note = 0) {
    const Compile c = compile(translated(formula));
    MemHandle compute = 0, result = 0;
    quint16 length = 0;
    EXPECT_EQ(api.NSFComputeStart(0, api.OSLockObject(c.handle), compute), 0);
    status = api.NSFComputeEvaluate(compute, note, result, length, matches, deletes, modified);
    const char* block = api.OSLockObject(result);
    const QByteArray bytes = block ? QByteArray(block, length) : QByteArray();
    if (block) texts = textsOf(block);
    api.OSUnlockObject(result);
    EXPECT_EQ(api.OSMemFree(result) == 0, result != 0);
    EXPECT_EQ(api.NSFComputeStop(compute), 0);
    api.OSUnlockObject(c.handle);
    EXPECT_EQ(api.OSMemFree(c.handle), 0);
    return bytes;
  }

  QStringList textsOf(const char* block) {
    QStringList all;
    const char* text = nullptr;
    quint16 length = 0;
    for (quint16 i = 0; api.ListGetText(block, true, i, text, length) == 0; ++i)
      all.append(fromLmbcs(QByteArrayView(text, length)));
    return all;
  }

  NoteHandle openNote() {
    DbHandle db = 0;
    NoteHandle note = 0;
    EXPECT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
    EXPECT_EQ(api.NSFNoteOpen(db, qint32(id.value()), 0, note), 0);
    return note;
  }

  static quint16 typeOf(const QByteArray& block) {
    return block.size() < 2 ? 0 : quint16(quint8(block[0]) | quint8(block[1]) << 8);
  }

  TestWorkspace t;
  EmbeddedCApi api;
  NoteId id;
  Status status = 0;
  bool matches = false, deletes = false, modified = false;
  QStringList texts;
};

TEST_F(Formulas, CompileToMemoryOfTheCaller) {
  const Compile c = compile("\"a\" : \"b\"");
  EXPECT_EQ(c.status, 0);
  EXPECT_NE(c.handle, 0u);
  EXPECT_LE(c.handle, 0x7FFFu);
  EXPECT_GT(c.length, 0);
  EXPECT_EQ(c.error, 0);
  EXPECT_EQ(api.OSMemFree(c.handle), 0);
  EXPECT_EQ(api.OSMemFree(c.handle), status::BadHandle);
}

TEST_F(Formulas, CompileToThePlatformsForm) {
  const auto codeOf = [&](const QByteArray& source) {
    const Compile c = compile(source);
    EXPECT_EQ(c.status, 0);
    const QByteArray code(api.OSLockObject(c.handle), c.length);
    api.OSUnlockObject(c.handle);
    EXPECT_EQ(api.OSMemFree(c.handle), 0);
    return code;
  };
  EXPECT_EQ(codeOf("@IsNewDoc").toHex(), "0a000000080089000300");
  EXPECT_EQ(codeOf("Status = \"Done\"").toHex(),
            "280000001a000500060053746174757301000400446f6e650a02030007000c000500093153325300");
  // Without a code for a function it stays the source.
  EXPECT_EQ(codeOf("@Pi"), QByteArray("\0\0@Pi", 5));
}

// Formulas of design notes, started where they lie in an item.
TEST_F(Formulas, OfItemsRunInEitherForm) {
  const auto start = [&](const QByteArray& formula) {
    const NoteId design = t.add({{u"$Formula"_s, rawValue(itemtype::Formula, formula)}});
    DbHandle db = 0;
    NoteHandle note = 0;
    EXPECT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
    EXPECT_EQ(api.NSFNoteOpen(db, qint32(design.value()), 0, note), 0);
    BlockId item{}, value{};
    quint16 type = 0;
    quint32 length = 0;
    EXPECT_EQ(api.NSFItemInfo(note, "$Formula", 8, item, type, value, length), 0);
    MemHandle compute = 0;
    const Status started = api.NSFComputeStart(0, api.OSLockObject(value.pool) + value.block + 2, compute);
    EXPECT_EQ(started == 0, compute != 0);
    if (compute) {
      MemHandle result = 0;
      quint16 size = 0;
      EXPECT_EQ(api.NSFComputeEvaluate(compute, openNote(), result, size, matches, deletes, modified), 0);
      EXPECT_EQ(api.NSFComputeStop(compute), 0);
    }
    return started;
  };
  EXPECT_EQ(start(sourceFormula(u"Form = \"Memo\"")), 0);
  EXPECT_TRUE(matches);
  const formula::MachineEnvironment environment;
  EXPECT_EQ(start(formula::writeCompiled(u"Form = \"Memo\"", environment).bytes), 0);
  EXPECT_TRUE(matches);
  EXPECT_EQ(start(formula::writeCompiled(u"Form = \"Task\"", environment).bytes), 0);
  EXPECT_FALSE(matches);
  EXPECT_EQ(start(QByteArray::fromHex("160009000c005a5a5a5a5a5a5a5a0400040004000400")),
            formula::fault::Hidden);
  EXPECT_EQ(start(QByteArray::fromHex("0a0000000800c1000300")), formula::fault::UnknownFunction);
  EXPECT_EQ(start(QByteArray::fromHex("0a000000080089000200")), status::BadHandle);
  EXPECT_EQ(start(QByteArray::fromHex("ffff0000080089000300")), status::BadHandle);
}

TEST_F(Formulas, AFaultHasItsReasonAndPlace) {
  const Compile c = compile("x := 1;\r\n @Lefft(x; 2)");
  EXPECT_EQ(c.status, 0x0501);
  EXPECT_EQ(c.error, 0x051B);
  EXPECT_EQ(c.handle, 0u);
  EXPECT_EQ(c.line, 1);
  EXPECT_EQ(c.column, 1);
  EXPECT_EQ(c.offset, 10);
  EXPECT_EQ(c.errorLength, 6);
}

// The caller marks the stretch in a text box: one byte is one character there.
TEST_F(Formulas, TextOfTheCodePageCountsOneByteForACharacter) {
  for (const QByteArray& line : {QByteArray(), QByteArray("1;\r\n")}) {
    const Compile plain = compile(line + "\"ab\" \"x\"");
    const Compile umlauts = compile(line + toCodePage(u"\"éü\" \"x\""));
    EXPECT_EQ(plain.error, 0x050B);
    EXPECT_EQ(plain.offset, line.size() + 5);
    EXPECT_EQ(umlauts.error, plain.error);
    EXPECT_EQ(umlauts.offset, plain.offset);
    EXPECT_EQ(umlauts.errorLength, plain.errorLength);
  }
}

TEST_F(Formulas, PlacesCountBytesOfTheStoredCharacterSet) {
  const QByteArray text = translated(u"\"日本\" \"x\""_s);
  const Compile c = compile(text);
  EXPECT_EQ(c.error, 0x050B);
  EXPECT_EQ(c.offset, text.size() - 3);
  EXPECT_EQ(c.errorLength, 3);
}

TEST_F(Formulas, NamesWithLettersBeyondAsciiPassTheCheckInTheCodePage) {
  EXPECT_EQ(compile(toCodePage(u"Größe + 1")).status, 0);
}

// What OSTranslate has made is compiled as such, once. Other bytes are text of the code page, all 256 of
// them.
TEST_F(Formulas, OnlyATranslatedTextIsReadAsTheStoredCharacterSet) {
  for (int byte = 1; byte < 256; ++byte) {
    const QString unit = fromCodePage(QByteArray(1, char(byte)));
    const QString source = u"a%1b := 1; 2"_s.arg(unit);
    const formula::Compiled expected = formula::compile(source, {});
    const QByteArray stored = translated(source);
    EXPECT_EQ(stored, toLmbcs(source));
    const Compile fromStored = compile(stored), fromPage = compile(toCodePage(source));
    EXPECT_EQ(fromStored.status == 0, bool(expected)) << byte;
    EXPECT_EQ(fromPage.status == 0, bool(expected)) << byte;
    EXPECT_EQ(fromPage.offset, expected ? 0 : expected.error.offset) << byte;
  }
  const QByteArray letter = translated(u"ÿ := 1; 2"_s);  // a no-break space in the code page's order
  EXPECT_EQ(compile(letter).status, 0);
  EXPECT_EQ(compile(letter).status, compile(toCodePage(fromCodePage(letter))).status);
}

TEST_F(Formulas, OnlyAsManyBytesAsTheLengthSaysAreRead) {
  Compile c;
  EXPECT_EQ(
      api.NSFFormulaCompile("1 +", 1, c.handle, c.length, c.error, c.line, c.column, c.offset, c.errorLength),
      0);
}

TEST_F(Formulas, ResultsAreAlwaysLists) {
  QByteArray block = evaluate(u"1/3"_s);
  ASSERT_EQ(block.size(), 14);
  EXPECT_EQ(typeOf(block), 0x0301);
  EXPECT_EQ(block.mid(2, 4), QByteArray("\1\0\0\0", 4));
  double third = 0;
  std::memcpy(&third, block.constData() + 6, sizeof third);
  EXPECT_EQ(third, 1.0 / 3);

  EXPECT_EQ(typeOf(evaluate(u"\"a\" : \"b\""_s)), 0x0501);
  EXPECT_EQ(texts, QStringList({u"a"_s, u"b"_s}));
  EXPECT_EQ(typeOf(evaluate(u"\"\""_s)), 0x0501);
  EXPECT_EQ(texts, QStringList(QString()));
  EXPECT_EQ(typeOf(evaluate(u"@Today"_s)), 0x0401);
  EXPECT_EQ(status, 0);
}

TEST_F(Formulas, AFailedEvaluationLeavesNothingToRead) {
  EXPECT_TRUE(evaluate(u"1 / \"a\""_s).isEmpty());
  EXPECT_EQ(status, 0x053D);
  EXPECT_EQ(api.OSLockObject(0), nullptr);
}

TEST_F(Formulas, ReadTheNoteThatIsGiven) {
  const NoteHandle note = openNote();
  evaluate(u"Subject : Form"_s, note);
  EXPECT_EQ(texts, QStringList({u"Größe"_s, u"Memo"_s}));
  EXPECT_FALSE(modified);
  evaluate(u"@Text(@Sum(Amounts))"_s, note);
  EXPECT_EQ(texts, QStringList(u"3.5"_s));
  evaluate(u"SELECT Form = \"Memo\""_s, note);
  EXPECT_TRUE(matches);
  evaluate(u"SELECT Form = \"Task\""_s, note);
  EXPECT_FALSE(matches);
  evaluate(u"Subject"_s);
  EXPECT_EQ(texts, QStringList(QString())) << "without a note there is no item";
}

TEST_F(Formulas, FieldsAreWrittenToTheOpenNoteAndNotToTheDatabase) {
  const NoteHandle note = openNote();
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  ASSERT_EQ(api.NSFItemInfo(note, "Subject", 7, item, type, value, length), 0);
  const QByteArray before(api.OSLockObject(value.pool) + value.block, length);
  api.OSUnlockObject(value.pool);
  const MemHandle handedOut = value.pool;
  evaluate(u"FIELD Subject := \"new subject\"; FIELD Amounts := @DeleteField; 1"_s, note);
  EXPECT_TRUE(modified);
  // What was handed out stays readable until the note is closed.
  EXPECT_EQ(QByteArray(api.OSLockObject(handedOut), qsizetype(before.size())), before);
  ASSERT_EQ(api.NSFItemInfo(note, "Subject", 7, item, type, value, length), 0);
  EXPECT_EQ(length, 2u + 11u);
  EXPECT_EQ(api.NSFItemInfo(note, "Amounts", 7, item, type, value, length), status::NoItem);
  Note stored;
  ASSERT_TRUE(t.store->notes().read(id, stored));
  EXPECT_EQ(stored.text(u"Subject"), u"Größe"_s);
  api.NSFNoteClose(note);
  EXPECT_EQ(api.OSLockObject(handedOut), nullptr);
}

TEST_F(Formulas, StaleAndWrongHandlesAreAStatus) {
  MemHandle compute = 7, result = 7;
  quint16 length = 7;
  EXPECT_EQ(api.NSFComputeStart(0, nullptr, compute), status::BadHandle);
  EXPECT_EQ(compute, 0u);
  const char elsewhere[] = "no memory of the library";
  EXPECT_EQ(api.NSFComputeStart(0, elsewhere, compute), status::BadHandle);
  EXPECT_EQ(api.NSFComputeEvaluate(0, 0, result, length, matches, deletes, modified), status::BadHandle);
  EXPECT_EQ(result, 0u);
  EXPECT_EQ(api.NSFComputeStop(0), status::BadHandle);
  const Compile c = compile("1");
  ASSERT_EQ(api.NSFComputeStart(0, api.OSLockObject(c.handle), compute), 0);
  EXPECT_EQ(api.NSFComputeEvaluate(compute, 0x20000005, result, length, matches, deletes, modified),
            status::BadHandle);
  EXPECT_EQ(api.NSFComputeStop(compute), 0);
  EXPECT_EQ(api.NSFComputeStop(compute), status::BadHandle);
  EXPECT_EQ(api.NSFComputeEvaluate(compute, 0, result, length, matches, deletes, modified),
            status::BadHandle);
}

TEST_F(Formulas, MemoryThatHoldsNoFormulaIsNotRunAsOne) {
  MemHandle servers = 0, compute = 0;
  ASSERT_EQ(api.NSGetServerList(0, servers), 0);
  EXPECT_NE(api.NSFComputeStart(0, api.OSLockObject(servers), compute), 0);
  EXPECT_EQ(compute, 0u);
}

TEST_F(Formulas, TheEndOfTheLibraryEndsItsComputations) {
  const Compile c = compile("1");
  MemHandle compute = 0;
  ASSERT_EQ(api.NSFComputeStart(0, api.OSLockObject(c.handle), compute), 0);
  EXPECT_GT(api.openHandles(), 0);
  api.NotesTerm();
  EXPECT_EQ(api.openHandles(), 0);
  EXPECT_EQ(api.NSFComputeStop(compute), status::BadHandle);
}

TEST_F(Formulas, EveryReasonHasAText) {
  for (const quint16 code :
       {0x0501, 0x0502, 0x050B, 0x051B, 0x0526, 0x0534, 0x053D, 0x0549, 0x056C, 0x056E}) {
    QByteArray buffer(256, '\0');
    EXPECT_GT(api.OSLoadString(0, code, buffer, 256), 5) << code;
  }
}

}  // namespace
