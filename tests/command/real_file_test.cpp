// What is told of real databases of the platform, and of the formulas in a design.
#include <QRegularExpression>

#include "command/command_fixture.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/support/test_context.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/nsf_maker.h"

namespace lens {
namespace {

class RealFile : public CommandTest {
 protected:
  RealFile() {
    bytes = made::makeFile(made::sampleDatabase(&ids)).bytes;
    write(path(), bytes);
  }
  QString path() const { return file(u"real.nsf"_s); }
  static QString eightDigits(quint32 id) { return u"%1"_s.arg(id, 8, 16, QLatin1Char('0')).toUpper(); }

  QByteArray bytes;
  made::SampleIds ids;
};

TEST_F(RealFile, IsToldWithoutAWorkspace) {
  const CommandResult result = run({u"nsf"_s, u"info"_s, path()});
  EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
  EXPECT_EQ(openedAt, QString());
  EXPECT_TRUE(result.out.contains(path())) << result.out.toStdString();
  EXPECT_TRUE(result.out.contains(u"notes"_s)) << result.out.toStdString();
  EXPECT_EQ(contentOf(path()), bytes);
}

TEST_F(RealFile, IsToldAsOneObject) {
  const auto objects = run({u"nsf"_s, u"info"_s, path(), u"--json"_s}).objects();
  ASSERT_EQ(objects.size(), 1);
  EXPECT_GT(objects[0][u"notesRead"].toInt(), 5);
  EXPECT_EQ(objects[0][u"notesRead"], objects[0][u"notesFound"]);
}

TEST_F(RealFile, ItsNotesAndStubsAreAnObjectEach) {
  QStringList notes, stubs;
  for (const QJsonObject& object : run({u"nsf"_s, u"dump"_s, path(), u"--json"_s}).objects())
    (object[u"kind"] == u"stub"_s ? stubs : notes) += object[u"id"].toString();
  EXPECT_EQ(stubs, QStringList(NoteId(ids.stub).hexText()));
  for (const quint32 id : {ids.plain, ids.inRecord, ids.profile, ids.ghost, ids.softDeleted, ids.icon})
    EXPECT_TRUE(notes.contains(NoteId(id).hexText())) << id;
}

TEST_F(RealFile, ItsItemsAreListedForPeople) {
  const CommandResult result = run({u"nsf"_s, u"dump"_s, path()});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_TRUE(result.out.contains(u"note "_s + eightDigits(ids.plain))) << result.out.toStdString();
  EXPECT_TRUE(result.out.contains(u"    Subject "_s)) << result.out.toStdString();
}

TEST_F(RealFile, WhatIsCutOffIsFoundMissing) {
  write(path(), bytes.first(bytes.size() * 3 / 4));
  const CommandResult result = run({u"nsf"_s, u"dump"_s, path()});
  EXPECT_NE(result.code, exitcode::Done);
  ASSERT_EQ(result.errorLines().size(), 1) << result.error.toStdString();
  EXPECT_TRUE(result.error.contains(path()));
}

TEST_F(RealFile, OtherFilesAndWordsAreRefusedInOneLine) {
  write(file(u"other.nsf"_s), "something else");
  for (const QStringList& arguments :
       {QStringList{u"nsf"_s, u"info"_s, file(u"other.nsf"_s)}, {u"nsf"_s, u"dump"_s, file(u"none.nsf"_s)}}) {
    const CommandResult result = run(arguments);
    EXPECT_EQ(result.code, exitcode::Failed);
    EXPECT_EQ(result.out, QString());
    ASSERT_EQ(result.errorLines().size(), 1);
    EXPECT_TRUE(result.error.contains(arguments[2])) << result.error.toStdString();
  }
  EXPECT_EQ(run({u"nsf"_s, u"show"_s, path()}).code, exitcode::WrongUse);
}

TEST_F(RealFile, ARefusedOneIsToldAsFarAsItsHeaderGoes) {
  made::MadeDatabase old = made::sampleDatabase();
  old.ods = 41;
  write(path(), made::makeFile(old).bytes);
  const CommandResult text = run({u"nsf"_s, u"info"_s, path()});
  EXPECT_EQ(text.code, exitcode::Failed);
  EXPECT_TRUE(text.out.contains(u"ODS version: 41"_s) && text.out.contains(u"Not opened. "_s))
      << text.out.toStdString();
  ASSERT_EQ(text.errorLines().size(), 1);
  EXPECT_TRUE(text.error.contains(path() + u": It was created by an older release"_s));
  const CommandResult json = run({u"nsf"_s, u"info"_s, path(), u"--json"_s});
  EXPECT_EQ(json.code, exitcode::Failed);
  ASSERT_EQ(json.objects().size(), 1);
  EXPECT_EQ(json.objects()[0][u"title"], u"Papers"_s);
  EXPECT_NE(json.objects()[0][u"refused"].toString(), QString());
  EXPECT_EQ(run({u"nsf"_s, u"dump"_s, path()}).out, QString());
}

TEST_F(RealFile, SalvageFindsNotesThatNoTableLeadsTo) {
  made::MadeDatabase described = made::sampleDatabase(&ids);
  described.entries.insert(ids.icon, made::MadeEntry{0x7FFFFFFF, 0});
  write(path(), made::makeFile(described).bytes);
  const auto shows = [&](const QStringList& options) {
    const CommandResult result = run(QStringList{u"nsf"_s, u"dump"_s, path()} + options);
    return result.out.contains(u"note "_s + eightDigits(ids.icon));
  };
  EXPECT_FALSE(shows({}));
  EXPECT_TRUE(shows({u"--salvage"_s}));
}

TEST_F(RealFile, ItsAccessControlListIsTold) {
  const CommandResult text = run({u"nsf"_s, u"info"_s, path()});
  EXPECT_TRUE(text.out.contains(u"Access control list: 3 entries\n"_s)) << text.out.toStdString();
  EXPECT_TRUE(text.lines().contains(
      u"    CN=Ada/O=T                                level 6  flags 0020  [Clerk] [Boss]"_s))
      << text.out.toStdString();
}

TEST_F(RealFile, IsReadByOtherCommandsInThePlaceOfADatabase) {
  const CommandResult result = run({u"documents"_s, path()});
  EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
  EXPECT_TRUE(result.out.contains(eightDigits(ids.plain))) << result.out.toStdString();
}

TEST_F(RealFile, HowFarTheReadingIsStandsOnATerminalOnly) {
  EXPECT_EQ(run({u"documents"_s, path()}).error, QString());
  QDir(place() + u"/cache"_s).removeRecursively();
  showsProgress = true;
  const CommandResult result = run({u"documents"_s, path()});
  const QRegularExpression half(QRegularExpression::escape(path()) + u": 5\\d %"_s);
  EXPECT_TRUE(result.error.contains(half)) << result.error.toStdString();
  EXPECT_EQ(result.code, exitcode::Done);
}

TEST_F(RealFile, AReadingThatIsInterruptedLeavesNothing) {
  interruptAfter = 4;
  const CommandResult result = run({u"documents"_s, path()});
  EXPECT_EQ(result.code, exitcode::Interrupted) << result.error.toStdString();
  EXPECT_EQ(result.out, QString());
  EXPECT_FALSE(QFileInfo::exists(place() + u"/cache"_s));
}

// Whatever the command is, its user is told that he does not see all.
TEST_F(RealFile, WhatCannotBeShownIsAWarningOfEveryCommand) {
  write(path(), made::makeFile(made::sampleWithALostNote(&ids)).bytes);
  const QString plain = eightDigits(ids.plain);
  for (const QStringList& command : {QStringList{u"documents"_s, path()},
                                     {u"show"_s, path(), plain},
                                     {u"items"_s, path()},
                                     {u"items"_s, path(), plain},
                                     {u"export"_s, path()},
                                     {u"export"_s, path(), u"--csv"_s},
                                     {u"export"_s, path(), u"--json"_s},
                                     {u"evaluate"_s, path(), plain, u"Form"_s},
                                     {u"compare"_s, path(), path()},
                                     {u"attachments"_s, path()},
                                     {u"formulas"_s, path()},
                                     {u"integrity"_s, path()}}) {
    const CommandResult result = run(command);
    // A document of the sample has a formula that nobody can read.
    const bool isFound = command.first() == u"integrity" || command.first() == u"formulas";
    const int code = isFound ? exitcode::Found : exitcode::Done;
    EXPECT_EQ(result.code, code) << command.first().toStdString() << ": " << result.error.toStdString();
    ASSERT_EQ(result.errorLines().size(), 1) << command.first().toStdString();
    EXPECT_TRUE(result.error.startsWith(command.first() + u": "_s + path() + u": "_s));
    EXPECT_TRUE(result.error.contains(u" notes read: not all"_s)) << result.error.toStdString();
  }
}

TEST_F(RealFile, FormulasOfADesignAreListedWithTheirSource) {
  const formula::TestEnvironment environment;
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"By date"));
  view.add(u"$FORMULA"_s, itemflag::Summary,
           rawValue(itemtype::Formula, formula::writeCompiled(u"SELECT Form = \"Memo\"", environment).bytes));
  save(view);
  Note form;
  form.header.noteClass = noteclass::Form;
  form.add(u"$TITLE"_s, 0, textValue(u"Memo"));
  form.add(u"$WindowTitle"_s, 0, sourceFormulaValue(u"\"New\";\nSubject"));
  save(form);
  save(memo(u"no formula"_s));
  const CommandResult result = run({u"formulas"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(result.lines(), QStringList({u"000008FA  By date                         $FORMULA"_s,
                                         u"    SELECT Form = \"Memo\""_s,
                                         u"000008FE  Memo                            $WindowTitle"_s,
                                         u"    \"New\";"_s, u"    Subject"_s}));
}

// Hundredths of a second have no place in a source.
TEST_F(RealFile, ADateThatSaysLessThanTheCodeIsTold) {
  QByteArray formula = formula::writeCompiled(u"[01/02/2024 10:00:00]", formula::TestEnvironment()).bytes;
  ASSERT_EQ(formula.size(), 18);
  constexpr qsizetype kHundredths = 8;  // behind three words of sizes and types and one of code
  ++formula[kHundredths];
  Note form;
  form.header.noteClass = noteclass::Form;
  form.add(u"$WindowTitle"_s, 0, rawValue(itemtype::Formula, formula));
  save(form);
  const CommandResult result = run({u"formulas"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_TRUE(result.out.contains(u"(a date in it says less than the code does)"_s))
      << result.out.toStdString();
}

TEST_F(RealFile, AFormulaThatCannotBeReadIsTold) {
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$FORMULA"_s, itemflag::Summary, rawValue(itemtype::Formula, "\x06\x00\x63\x00\x00\x00"));
  save(view);
  const CommandResult result = run({u"formulas"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Found);
  EXPECT_TRUE(result.out.contains(u"cannot be read: "_s)) << result.out.toStdString();
}

}  // namespace
}  // namespace lens
