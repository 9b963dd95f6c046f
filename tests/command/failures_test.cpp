// What goes wrong: one line on standard error that names what and where, an exit code, and nothing half done.
#include "command/command_fixture.h"
#include "embedded/format/source_formula.h"

#ifdef Q_OS_LINUX
#include "support/small_files.h"
#include "support/without_rights.h"
#endif

namespace lens {
namespace {

class Failures : public CommandTest {
 protected:
  Failures() {
    Note note = memo(u"Subject"_s);
    attach(note, u"letter.txt"_s, QByteArray(50'000, 'x'));
    note.add(u"Body"_s, 0, rawValue(itemtype::RichText, QByteArray()));
    note.add(u"Size"_s, itemflag::Summary, numberValue(1));
    save(note);
  }
  // Runs it, and expects one line that begins with the command and holds all of these.
  void expectFailure(const QStringList& arguments, const QStringList& named, int code = exitcode::Failed) {
    const CommandResult result = run(arguments);
    const std::string told = arguments.join(u' ').toStdString() + " said " + result.error.toStdString();
    EXPECT_EQ(result.code, code) << told;
    EXPECT_EQ(result.errorLines().size(), 1) << told;
    EXPECT_TRUE(result.error.endsWith(u'\n')) << told;
    EXPECT_TRUE(result.error.startsWith(arguments.value(0) + u": "_s)) << told;
    for (const QString& name : named)
      EXPECT_TRUE(result.error.contains(name)) << name.toStdString() << ": " << told;
  }
  // Those that take a database first, with what else they want.
  static QVector<QStringList> commandsWith(const QString& database, const QString& note = u"8FA"_s) {
    return {{u"documents"_s, database},
            {u"show"_s, database, note},
            {u"items"_s, database},
            {u"items"_s, database, note},
            {u"export"_s, database},
            {u"export"_s, database, u"--json"_s},
            {u"export"_s, database, u"--csv"_s},
            {u"set"_s, database, note, u"Subject"_s, u"x"_s, u"--yes"_s},
            {u"evaluate"_s, database, note, u"1"_s},
            {u"compare"_s, database, u"mail.nsf"_s},
            {u"compare"_s, u"mail.nsf"_s, database},
            {u"attachments"_s, database},
            {u"attachments"_s, database, u"--extract"_s, QDir::tempPath()},
            {u"formulas"_s, database},
            {u"integrity"_s, database}};
  }
  static QVector<QStringList> commandsWithNote(const QString& note) {
    QVector<QStringList> commands = commandsWith(u"mail.nsf"_s, note);
    commands.removeIf([&](const QStringList& command) { return !command.contains(note); });
    return commands;
  }
};

// So that a new command is tried as well.
TEST_F(Failures, AreTriedWithEveryCommandThatTakesADatabase) {
  QStringList tried;
  for (const QStringList& command : commandsWith(u"mail.nsf"_s)) tried += command.first();
  for (const CommandRow& row : commandTable()) {
    if (!QString::fromLatin1(row.arguments).startsWith(u"DB"_s)) continue;
    EXPECT_TRUE(tried.contains(QString::fromLatin1(row.name))) << row.name;
  }
}

TEST_F(Failures, AnUnknownDatabaseIsNamed) {
  for (const QStringList& command : commandsWith(u"none.nsf"_s))
    expectFailure(command, {u"none.nsf"_s, u"File does not exist"_s});
  expectFailure({u"import"_s, dxlFile(u"a.dxl"_s, 1), u"--into"_s, u"none.nsf"_s, u"--yes"_s},
                {u"none.nsf"_s});
  EXPECT_EQ(filesIn(place() + u"/data"_s).filter(u"none"_s), QStringList());
}

// Nothing is filled into a name that looks like a place for something.
TEST_F(Failures, NamesWithPercentSignsAreToldAsTheyAre) {
  const QString file = dxlFile(u"%1%2%3%4.dxl"_s, 1, "<");
  expectFailure({u"import"_s, file, u"--into"_s, u"mail.nsf"_s, u"--yes"_s}, {file + u", line "_s});
  workspace->copyDatabase({{}, u"mail.nsf"_s}, {{}, u"%1%3%5.nsf"_s});
  EXPECT_EQ(run({u"compare"_s, u"%1%3%5.nsf"_s, u"mail.nsf"_s}).lines().last(),
            u"0 only in %1%3%5.nsf, 0 only in mail.nsf, 0 changed"_s);
}

TEST_F(Failures, AnUnknownServerIsNamed) {
  for (const QStringList& command : commandsWith(u"Nowhere/Acme!!mail.nsf"_s))
    expectFailure(command, {u"Nowhere/Acme"_s});
  expectFailure({u"databases"_s, u"--server"_s, u"Nowhere/Acme"_s}, {u"Nowhere/Acme"_s});
}

TEST_F(Failures, APathThatLeadsOutIsRefused) {
  for (const QStringList& command : commandsWith(u"../notes.ini"_s))
    expectFailure(command, {u"../notes.ini"_s});
}

TEST_F(Failures, AFileThatIsNoDatabaseIsNamed) {
  write(place() + u"/data/foreign.nsf"_s, QByteArray(5000, 'x'));
  for (const QStringList& command : commandsWith(u"foreign.nsf"_s))
    expectFailure(command, {u"foreign.nsf"_s, u"not a database"_s});
  EXPECT_EQ(contentOf(place() + u"/data/foreign.nsf"_s), QByteArray(5000, 'x'));
}

TEST_F(Failures, ABadNoteIdIsNamed) {
  for (const char16_t* note : {u"8FF00", u"xyz", u"0", u"123456789", u"0123456789ABCDEF0123456789ABCDEF",
                               u"0123456789ABCDEF0123456789ABCDEX"}) {
    const QString text = QString::fromUtf16(note);
    for (const QStringList& command : commandsWithNote(text)) expectFailure(command, {text, u"mail.nsf"_s});
  }
}

TEST_F(Failures, ADeletedNoteIsNamed) {
  mail->notes().remove(NoteId(0x8FA));
  for (const QStringList& command : commandsWithNote(u"8FA"_s))
    expectFailure(command, {u"8FA"_s, u"mail.nsf"_s});
}

TEST_F(Failures, ABrokenFormulaIsTold) {
  expectFailure({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, u"1 +"_s},
                {u"mail.nsf"_s, u"8FA"_s, u"line 1, character"_s});
  expectFailure({u"documents"_s, u"mail.nsf"_s, u"--formula"_s, u"@None(1"_s}, {u"mail.nsf"_s, u"@None"_s});
  expectFailure({u"export"_s, u"mail.nsf"_s, u"--csv"_s, u"--formula"_s, u"@None(1"_s},
                {u"mail.nsf"_s, u"@None"_s});
  expectFailure({u"check"_s, u"1 +"_s}, {u"1 +"_s, u"line 1, character"_s}, exitcode::Found);
}

TEST_F(Failures, AFormulaThatFailsOrDoesNotGoThroughTheDoorIsTold) {
  expectFailure({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, u"@TextToNumber(\"x\")"_s},
                {u"mail.nsf"_s, u"8FA"_s});
  const QString outside = u"\"\u65E5\u672C\""_s, tooLong = u"\""_s + QString(70'000, u'x') + u'"';
  for (const QString& formula : {outside, tooLong}) {
    expectFailure({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, formula}, {u"mail.nsf"_s, u"the formula"_s});
    expectFailure({u"check"_s, formula}, {u"the formula"_s});
  }
}

TEST_F(Failures, AnUnknownViewAndABadQueryAreTold) {
  expectFailure({u"documents"_s, u"mail.nsf"_s, u"--view"_s, u"Nowhere"_s}, {u"mail.nsf"_s, u"Nowhere"_s});
  expectFailure({u"export"_s, u"mail.nsf"_s, u"--view"_s, u"Nowhere"_s}, {u"mail.nsf"_s, u"Nowhere"_s});
  expectFailure({u"documents"_s, u"mail.nsf"_s, u"--search"_s, u"pumps"_s}, {u"mail.nsf"_s});
}

TEST_F(Failures, SetRefusesWhatItDoesNotWriteAndNamesIt) {
  const auto set = [](const QStringList& rest) {
    return QStringList{u"set"_s, u"mail.nsf"_s, u"8FA"_s} + rest + QStringList{u"--yes"_s};
  };
  const Note before = read(NoteId(0x8FA));
  expectFailure(set({u"Body"_s, u"x"_s}), {u"mail.nsf"_s, u"8FA"_s, u"Body"_s, u"RICHTEXT"_s});
  expectFailure(set({u"$FILE"_s, u"x"_s}), {u"$FILE"_s, u"ATTACHMENT"_s});
  expectFailure(set({u"Size"_s, u"many"_s}), {u"Size"_s, u"many"_s, u"no number"_s});
  expectFailure(set({u"Size"_s, u"some day"_s, u"--type"_s, u"date"_s}), {u"some day"_s, u"no date"_s});
  expectFailure(set({u"Subject"_s, QString(70'000, u'x'), u"y"_s}), {u"mail.nsf"_s, u"Subject"_s});
  expectFailure(set({u""_s, u"x"_s}), {u"mail.nsf"_s, u"8FA"_s});
  const Note after = read(NoteId(0x8FA));
  EXPECT_EQ(after.header.sequence, before.header.sequence);
  EXPECT_EQ(after.items.size(), before.items.size());
}

TEST_F(Failures, AMissingFileToImportIsNamed) {
  expectFailure({u"import"_s, file(u"none.dxl"_s), u"--into"_s, u"mail.nsf"_s, u"--yes"_s},
                {file(u"none.dxl"_s)});
}

TEST_F(Failures, AMissingWorkspaceIsNamedAndNotMade) {
  const QString missing = file(u"nowhere"_s);
  expectFailure({u"databases"_s, u"--workspace"_s, missing}, {missing});
  EXPECT_FALSE(QFile::exists(missing));
  QDir().mkpath(file(u"empty"_s));
  expectFailure({u"databases"_s, u"--workspace"_s, file(u"empty"_s)}, {file(u"empty"_s), u"notes.ini"_s});
  EXPECT_EQ(filesIn(file(u"empty"_s)), QStringList());
  write(file(u"plain"_s), "x");
  expectFailure({u"databases"_s, u"--workspace"_s, file(u"plain"_s)}, {file(u"plain"_s)});
}

TEST_F(Failures, WhatOnlyTheEngineCanDoIsSaidWhereTheClientIsInUse) {
  clientBehindDoors = true;
  const QString dxl = dxlFile(u"a.dxl"_s, 1);
  for (const QStringList& command : {QStringList{u"import"_s, dxl, u"--into"_s, u"mail.nsf"_s, u"--yes"_s},
                                     {u"export"_s, u"mail.nsf"_s},
                                     {u"compare"_s, u"mail.nsf"_s, u"mail.nsf"_s},
                                     {u"integrity"_s, u"mail.nsf"_s}})
    expectFailure(command, {u"Notes client"_s, u'"' + command[0] + u'"'});
  EXPECT_EQ(run({u"show"_s, u"mail.nsf"_s, u"8FA"_s}).code, exitcode::Done);
  EXPECT_EQ(run({u"export"_s, u"mail.nsf"_s, u"--json"_s}).code, exitcode::Done);
}

// A walk passes over what cannot be read; what is left out is told, and a file that lacks it is not written.
TEST_F(Failures, DamagedNotesAreNotLeftOutInSilence) {
  save(memo(u"Second"_s));
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$FORMULA"_s, itemflag::Summary, sourceFormulaValue(u"SELECT @All"));
  save(view);
  ASSERT_EQ(sqlite3_exec(mail->handle(), "UPDATE note SET items = x'00' WHERE id = 2298", nullptr, nullptr,
                         nullptr),
            0);
  for (const QStringList& command : {QStringList{u"documents"_s, u"mail.nsf"_s},
                                     {u"items"_s, u"mail.nsf"_s},
                                     {u"attachments"_s, u"mail.nsf"_s},
                                     {u"export"_s, u"mail.nsf"_s, u"--json"_s, u"--output"_s, file(u"out"_s)},
                                     {u"export"_s, u"mail.nsf"_s, u"--csv"_s, u"--output"_s, file(u"out"_s)},
                                     {u"export"_s, u"mail.nsf"_s, u"--output"_s, file(u"out"_s)},
                                     {u"formulas"_s, u"mail.nsf"_s},
                                     {u"compare"_s, u"mail.nsf"_s, u"mail.nsf"_s}})
    expectFailure(command, {u"mail.nsf"_s, u"damaged"_s});
  EXPECT_EQ(filesIn(directory.path()), QStringList());
  EXPECT_EQ(run({u"documents"_s, u"mail.nsf"_s}).out, u"000008FE  Memo                  Second\n"_s);
  EXPECT_TRUE(run({u"formulas"_s, u"mail.nsf"_s}).out.contains(u"SELECT @All"_s));
  mail->notes().remove(NoteId(0x8FA));
  EXPECT_EQ(run({u"documents"_s, u"mail.nsf"_s}).code, exitcode::Done);
}

// --- the command line itself ---

TEST_F(Failures, WrongUseIsToldWithTheCommand) {
  for (const CommandRow& command : commandTable()) {
    const QString name = QString::fromLatin1(command.name);
    expectFailure({name, u"--bogus"_s}, {u"bogus"_s, u"--help"_s}, exitcode::WrongUse);
    if (command.fewest > 0)
      expectFailure({name}, {QString::fromLatin1(command.arguments)}, exitcode::WrongUse);
    if (command.most >= 0)
      expectFailure(QStringList{name} + QStringList(command.most + 1, u"x"_s), {u"arguments"_s},
                    exitcode::WrongUse);
  }
}

TEST_F(Failures, WrongOptionsAreTold) {
  expectFailure({u"databases"_s, u"x"_s}, {u"takes no arguments"_s}, exitcode::WrongUse);
  expectFailure({u"import"_s, u"x.dxl"_s}, {u"--into"_s}, exitcode::WrongUse);
  expectFailure({u"export"_s, u"mail.nsf"_s, u"--json"_s, u"--csv"_s}, {u"exclude"_s}, exitcode::WrongUse);
  expectFailure({u"export"_s, u"mail.nsf"_s, u"--json"_s, u"--items"_s, u"a"_s}, {u"--csv"_s},
                exitcode::WrongUse);
  for (const char16_t* command : {u"documents", u"export"})
    expectFailure({QString::fromUtf16(command), u"mail.nsf"_s, u"--view"_s, u"a"_s, u"--formula"_s, u"1"_s},
                  {u"exclude"_s}, exitcode::WrongUse);
  expectFailure({u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"a"_s, u"1"_s, u"--type"_s, u"colour"_s}, {u"colour"_s},
                exitcode::WrongUse);
  expectFailure({u"show"_s, u"mail.nsf"_s, u"8FA"_s, u"--workspace"_s}, {u"workspace"_s}, exitcode::WrongUse);
  // An option of another command.
  expectFailure({u"show"_s, u"mail.nsf"_s, u"8FA"_s, u"--csv"_s}, {u"csv"_s}, exitcode::WrongUse);
}

TEST_F(Failures, AnUnknownCommandIsTold) {
  const CommandResult result = run({u"docments"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::WrongUse);
  EXPECT_EQ(result.error, u"TessalyAndDocContent: there is no command \"docments\" (--help tells more)\n"_s);
}

// --- receivers that take no more ---

class FullDevice : public QIODevice {
 public:
  FullDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char*, qint64) override {
    setErrorString(u"No space left on device"_s);
    return -1;
  }
};

TEST_F(Failures, AFullOutputIsToldByEveryCommand) {
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"All"));
  view.add(u"$FORMULA"_s, itemflag::Summary, sourceFormulaValue(u"SELECT @All"_s));
  save(view);
  QVector<QStringList> commands = commandsWith(u"mail.nsf"_s);
  // What it writes goes elsewhere.
  commands.removeIf([](const QStringList& command) { return command.contains(u"--extract"_s); });
  commands += {{u"databases"_s}, {u"check"_s, u"1"_s}, {u"--help"_s}, {u"--version"_s}};
  for (const QStringList& command : std::as_const(commands)) {
    FullDevice full;
    const CommandResult result = runInto(command, &full);
    EXPECT_EQ(result.code, exitcode::Failed) << command.join(u' ').toStdString();
    EXPECT_EQ(result.errorLines().size(), 1) << result.error.toStdString();
    EXPECT_TRUE(result.error.contains(u"standard output: No space left on device"_s))
        << result.error.toStdString();
  }
}

#ifdef Q_OS_LINUX
TEST_F(Failures, AFileOnAFullDiskIsNamedAndTheFormerOneStays) {
  {
    Database::Transaction transaction(*mail);
    for (int i = 0; i < 400; ++i) save(memo(u"A subject of some length, number %1"_s.arg(i)));
    transaction.commit();
  }
  const QString target = file(u"out"_s);
  write(target, "former");
  for (const char16_t* format : {u"--dxl", u"--json", u"--csv"}) {
    const SmallFiles full(4096);
    expectFailure({u"export"_s, u"mail.nsf"_s, QString::fromUtf16(format), u"--output"_s, target, u"--yes"_s},
                  {target});
  }
  EXPECT_EQ(contentOf(target), "former");
  EXPECT_EQ(filesIn(directory.path()), QStringList{u"out"_s});
}

TEST_F(Failures, AnAttachmentOnAFullDiskIsNamedAndNothingIsLeft) {
  QDir().mkpath(file(u"out"_s));
  {
    const SmallFiles full(4096);
    expectFailure({u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, file(u"out"_s)},
                  {u"letter.txt"_s, u"8FA"_s});
  }
  EXPECT_EQ(filesIn(file(u"out"_s)), QStringList());
}

TEST_F(Failures, ADatabaseOnAFullDiskStaysAsItWas) {
  const QString dxl = dxlFile(u"a.dxl"_s, 200);
  {
    const SmallFiles full(rlim_t(QFileInfo(mail->path()).size()) / 8);
    expectFailure({u"import"_s, dxl, u"--into"_s, u"mail.nsf"_s, u"--yes"_s}, {u"mail.nsf"_s});
    expectFailure({u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"Subject"_s, u"y"_s, u"--yes"_s},
                  {u"mail.nsf"_s, u"8FA"_s});
  }
  EXPECT_EQ(mail->notes().noteCount(noteclass::Document), 1);
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"Subject"_s);
}

TEST_F(Failures, APlaceThatCannotBeWrittenIsNamed) {
  QDir().mkpath(file(u"locked"_s));
  const WithoutRights user(directory.path());
  QFile::setPermissions(file(u"locked"_s), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
  expectFailure({u"export"_s, u"mail.nsf"_s, u"--output"_s, file(u"locked/out.dxl"_s)},
                {file(u"locked/out.dxl"_s)});
  expectFailure({u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, file(u"locked"_s)}, {file(u"locked"_s)});
  EXPECT_EQ(filesIn(file(u"locked"_s)), QStringList());
  QFile::setPermissions(file(u"locked"_s),
                        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(Failures, ADatabaseThatCannotBeMadeOrWrittenIsNamed) {
  const QString dxl = dxlFile(u"a.dxl"_s, 1), data = place() + u"/data"_s;
  const WithoutRights user(directory.path());
  const auto allow = [](const QString& path, bool write) {
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner |
                                    (write ? QFileDevice::WriteOwner : QFileDevice::Permission()));
  };
  const QStringList before = filesIn(data);
  allow(data, false);
  expectFailure({u"import"_s, dxl, u"--into"_s, u"new.nsf"_s, u"--create"_s, u"--yes"_s}, {u"new.nsf"_s});
  allow(data, true);
  EXPECT_EQ(filesIn(data), before);
}
#endif

TEST_F(Failures, APlaceWhereNoFileCanBeIsNamed) {
  const QStringList command{u"export"_s, u"mail.nsf"_s, u"--yes"_s, u"--output"_s};
  expectFailure(command + QStringList{directory.path()}, {directory.path(), u"directory"_s});
  expectFailure(command + QStringList{file(u"none/out.dxl"_s)}, {file(u"none/out.dxl"_s), u"directory"_s});
  expectFailure(command + QStringList{mail->path()}, {mail->path()});
  expectFailure({u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, file(u"none"_s)}, {file(u"none"_s)});
#ifdef Q_OS_UNIX
  expectFailure(command + QStringList{u"/dev/full"_s}, {u"/dev/full"_s});
#endif
}

TEST_F(Failures, ExtractingReplacesAFileOnDemandOnly) {
  write(file(u"letter.txt"_s), "mine");
  const QStringList command{u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, directory.path()};
  expectFailure(command, {u"letter.txt"_s, u"--yes"_s});
  EXPECT_EQ(contentOf(file(u"letter.txt"_s)), "mine");
  EXPECT_EQ(run(command + QStringList{u"--yes"_s}).code, exitcode::Done);
  EXPECT_EQ(contentOf(file(u"letter.txt"_s)), QByteArray(50'000, 'x'));
}

// --- the user ends it ---

TEST_F(Failures, EveryWalkCanBeEnded) {
  for (int i = 0; i < 30; ++i) save(memo(u"x"_s));
  for (const QStringList& command : {QStringList{u"documents"_s, u"mail.nsf"_s},
                                     {u"documents"_s, u"mail.nsf"_s, u"--formula"_s, u"1"_s},
                                     {u"items"_s, u"mail.nsf"_s},
                                     {u"export"_s, u"mail.nsf"_s},
                                     {u"compare"_s, u"mail.nsf"_s, u"mail.nsf"_s},
                                     {u"attachments"_s, u"mail.nsf"_s},
                                     {u"integrity"_s, u"mail.nsf"_s}}) {
    interruptAfter = 0;
    expectFailure(command, {}, exitcode::Interrupted);
  }
}

TEST_F(Failures, ProgressIsShownToAPersonAndClearedBeforeALine) {
  for (int i = 0; i < 30; ++i) save(memo(u"x"_s));
  const CommandResult quiet = run({u"items"_s, u"mail.nsf"_s});
  EXPECT_EQ(quiet.error, QString());
  showsProgress = true;
  const CommandResult shown = run({u"items"_s, u"mail.nsf"_s});
  EXPECT_TRUE(shown.error.startsWith(u"\r\u001B[Kmail.nsf: 0 %"_s)) << shown.error.toStdString();
  EXPECT_TRUE(shown.error.endsWith(u"\r\u001B[K"_s)) << "the line is empty at the end";
  EXPECT_EQ(shown.out, quiet.out);
}

}  // namespace
}  // namespace lens
