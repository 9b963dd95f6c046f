// What commands change and write: import, export, set.
#include "command/command_fixture.h"
#include "embedded/dxl/dxl_importer.h"
#include "support/in_zone.h"

namespace lens {
namespace {

class Writing : public CommandTest {
 protected:
  QStringList subjectsIn(const std::shared_ptr<Database>& database) const {
    QStringList subjects;
    database->notes().scan(noteclass::Document, [&](const Note& note) {
      subjects += note.text(u"Subject");
      return true;
    });
    return subjects;
  }
  QStringList set(const QStringList& arguments) {
    return QStringList{u"set"_s, u"mail.nsf"_s, u"8FA"_s} + arguments + QStringList{u"--yes"_s};
  }
};

TEST_F(Writing, ImportBringsNotesAndReports) {
  const CommandResult result =
      run({u"import"_s, dxlFile(u"a.dxl"_s, 3), u"--into"_s, u"mail.nsf"_s, u"--yes"_s});
  EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
  EXPECT_EQ(subjectsIn(mail), QStringList({u"Imported 1"_s, u"Imported 2"_s, u"Imported 3"_s}));
  EXPECT_TRUE(result.out.startsWith(u"3 notes imported, 0 of them replaced."_s)) << result.out.toStdString();
  EXPECT_EQ(mail->info().title, u"Karin's mail"_s);
}

TEST_F(Writing, ImportTakesFoldersAndTellsAsJson) {
  QDir().mkpath(file(u"folder/below"_s));
  dxlFile(u"folder/a.dxl"_s, 2);
  dxlFile(u"folder/below/b.dxl"_s, 1);
  const auto rows =
      run({u"import"_s, file(u"folder"_s), u"--into"_s, u"mail"_s, u"--yes"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 1);
  EXPECT_EQ(rows[0][u"notes"], 3);
  EXPECT_EQ(rows[0][u"replaced"], 1);
  EXPECT_EQ(rows[0][u"failed"].toArray(), QJsonArray());
}

TEST_F(Writing, ImportMakesADatabaseOnDemandOnly) {
  const QString dxl = dxlFile(u"a.dxl"_s, 1);
  const QString made = place() + u"/data/new/one.nsf"_s;
  EXPECT_EQ(run({u"import"_s, dxl, u"--into"_s, u"new/one.nsf"_s, u"--yes"_s}).code, exitcode::Failed);
  EXPECT_FALSE(QFile::exists(made));
  EXPECT_EQ(run({u"import"_s, dxl, u"--into"_s, u"new/one.nsf"_s, u"--create"_s, u"--yes"_s}).code,
            exitcode::Done);
  EXPECT_EQ(workspace->database({}, u"new/one.nsf"_s)->info().title, u"Other"_s);
}

TEST_F(Writing, ImportThatBringsNothingLeavesNoNewDatabase) {
  const QString broken = dxlFile(u"broken.dxl"_s, 1, "<oops");
  const CommandResult result =
      run({u"import"_s, broken, u"--into"_s, u"new.nsf"_s, u"--create"_s, u"--yes"_s});
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_EQ(result.errorLines().size(), 1);
  EXPECT_TRUE(result.error.contains(u"broken.dxl"_s) && result.error.contains(u"line 4"_s))
      << result.error.toStdString();
  EXPECT_EQ(filesIn(place() + u"/data"_s).filter(u"new"_s), QStringList());
}

TEST_F(Writing, ImportAsksAndTakesNoForAnAnswer) {
  const QStringList command{u"import"_s, dxlFile(u"a.dxl"_s, 1), u"--into"_s, u"mail.nsf"_s};
  CommandResult result = run(command);
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_TRUE(result.error.contains(u"--yes"_s)) << result.error.toStdString();
  answer = "n\n";
  result = run(command);
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_TRUE(result.error.startsWith(u"Import 1 file into mail.nsf, replacing"_s))
      << result.error.toStdString();
  EXPECT_EQ(subjectsIn(mail), QStringList());
  answer = "y\n";
  EXPECT_EQ(run(command).code, exitcode::Done);
  EXPECT_EQ(subjectsIn(mail), QStringList{u"Imported 1"_s});
}

TEST_F(Writing, ImportThatTheUserEndsLeavesNothing) {
  interruptAfter = 2;
  const CommandResult result =
      run({u"import"_s, dxlFile(u"a.dxl"_s, 500), u"--into"_s, u"new.nsf"_s, u"--create"_s, u"--yes"_s});
  EXPECT_EQ(result.code, exitcode::Interrupted);
  EXPECT_EQ(filesIn(place() + u"/data"_s).filter(u"new"_s), QStringList());
}

TEST_F(Writing, ExportAsDxlComesBack) {
  save(memo(u"One"_s));
  save(memo(u"Two"_s));
  const CommandResult result = run({u"export"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  write(file(u"out.dxl"_s), result.out.toUtf8());
  const auto target = Database::create(file(u"back.nsf"_s), {});
  ImportReport report;
  DxlImporter(*target).importFile(file(u"out.dxl"_s), report);
  EXPECT_EQ(report.failed, QStringList());
  EXPECT_EQ(subjectsIn(target), QStringList({u"One"_s, u"Two"_s}));
  EXPECT_EQ(run({u"export"_s, u"mail.nsf"_s, u"--dxl"_s}).out, result.out);
}

TEST_F(Writing, ExportOfChosenDocuments) {
  for (const char16_t* subject : {u"One", u"Two", u"Three"}) save(memo(QString::fromUtf16(subject)));
  const CommandResult dxl = run({u"export"_s, u"mail.nsf"_s, u"--formula"_s, u"Subject = \"Two\""_s});
  EXPECT_TRUE(dxl.out.contains(u"Two"_s) && !dxl.out.contains(u"Three"_s));
  const auto json =
      run({u"export"_s, u"mail.nsf"_s, u"--json"_s, u"--formula"_s, u"@Begins(Subject; \"T\")"_s}).objects();
  ASSERT_EQ(json.size(), 2);
  EXPECT_EQ(json[0][u"noteId"], u"000008FE"_s);
  EXPECT_EQ(json[0][u"items"].toArray().size(), 2);
}

TEST_F(Writing, ExportAsJsonIsWhatShowShows) {
  save(memo(u"One"_s));
  EXPECT_EQ(run({u"export"_s, u"mail.nsf"_s, u"--json"_s}).out,
            run({u"show"_s, u"mail.nsf"_s, u"8FA"_s, u"--json"_s}).out);
}

TEST_F(Writing, ExportAsCsvHasAColumnForEachItemAndIsSafe) {
  const InZone zone("Europe/Berlin");
  Note first = memo(u"=HYPERLINK(\"http://x\")"_s);
  first.add(u"Size"_s, 0, numberValue(-5));
  Note second = memo(u"plain"_s);
  second.add(u"SIZE"_s, 0, numberListValue({1, 2}));
  second.add(u"Day"_s, 0, timeValue(timeDateOfDate(QDate(2026, 11, 22))));
  second.add(u"+Odd"_s, 0, textListValue({u"a"_s, u"b"_s}));
  const QString a = read(save(first)).header.unid.text(), b = read(save(second)).header.unid.text();
  const CommandResult result = run({u"export"_s, u"mail.nsf"_s, u"--csv"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(result.out, u"NoteID,UNID,Form,Subject,Size,Day,'+Odd\r\n000008FA,"_s + a +
                            u",Memo,\"'=HYPERLINK(\"\"http://x\"\")\",-5,,\r\n000008FE,"_s + b +
                            u",Memo,plain,1; 2,2026-11-22,a; b\r\n"_s);
  EXPECT_EQ(result.errorLines().size(), 1);
  EXPECT_TRUE(result.error.contains(u"2 cells"_s)) << result.error.toStdString();
}

TEST_F(Writing, ExportAsCsvOfNamedItems) {
  save(memo(u"One"_s));
  const CommandResult result =
      run({u"export"_s, u"mail.nsf"_s, u"--csv"_s, u"--items"_s, u"Subject, None,"_s});
  EXPECT_EQ(result.lines().value(0), u"NoteID,UNID,Subject,None\r"_s);
  EXPECT_TRUE(result.lines().value(1).endsWith(u",One,\r"_s));
}

TEST_F(Writing, ExportIntoAFileIsWholeOrAbsentAndReplacesOnDemand) {
  save(memo(u"One"_s));
  const QString target = file(u"out.json"_s);
  const QStringList command{u"export"_s, u"mail.nsf"_s, u"--json"_s, u"--output"_s, target};
  EXPECT_EQ(run(command).code, exitcode::Done);
  const QByteArray written = contentOf(target);
  EXPECT_TRUE(written.startsWith("{\"noteId\":\"000008FA\"") && written.endsWith("}\n"));
  save(memo(u"Two"_s));
  EXPECT_EQ(run(command).code, exitcode::Failed);
  EXPECT_EQ(contentOf(target), written);
  EXPECT_EQ(run(command + QStringList{u"--yes"_s}).code, exitcode::Done);
  EXPECT_EQ(contentOf(target).count('\n'), 2);
}

TEST_F(Writing, ExportThatTheUserEndsLeavesNoFile) {
  for (int i = 0; i < 20; ++i) save(memo(u"x"_s));
  for (const char16_t* format : {u"--dxl", u"--json", u"--csv"}) {
    interruptAfter = 10;
    const CommandResult result =
        run({u"export"_s, u"mail.nsf"_s, QString::fromUtf16(format), u"--output"_s, file(u"out"_s)});
    EXPECT_EQ(result.code, exitcode::Interrupted);
    EXPECT_EQ(result.errorLines().size(), 1) << result.error.toStdString();
    EXPECT_EQ(filesIn(directory.path()), QStringList());
  }
}

TEST_F(Writing, SetChangesAnItemAndTellsIt) {
  save(memo(u"Old"_s));
  const CommandResult result = run(set({u"Subject"_s, u"New \u20AC"_s}));
  EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
  EXPECT_EQ(result.out, u"000008FA  Subject: New \u20AC\n"_s);
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"New \u20AC"_s);
  const auto json = run(set({u"subject"_s, u"a"_s, u"b"_s, u"--json"_s})).objects();
  ASSERT_EQ(json.size(), 1);
  EXPECT_EQ(json[0][u"items"].toArray().at(0).toObject()[u"values"].toArray(), QJsonArray({u"a"_s, u"b"_s}));
  EXPECT_EQ(read(NoteId(0x8FA)).find(u"Subject")->value, textListValue({u"a"_s, u"b"_s}));
}

TEST_F(Writing, SetTakesTheKindOfTheItemOrTheOneAskedFor) {
  const InZone zone("Europe/Berlin");
  Note note = memo(u"x"_s);
  note.add(u"Size"_s, itemflag::Summary, numberValue(1));
  note.add(u"Day"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2020, 1, 1))));
  save(note);
  EXPECT_EQ(run({u"set"_s, u"--yes"_s, u"mail.nsf"_s, u"8FA"_s, u"Size"_s, u"--"_s, u"-2.5"_s}).code,
            exitcode::Done);
  EXPECT_EQ(run(set({u"Day"_s, u"2026-11-22T23:30:00Z"_s})).code, exitcode::Done);
  EXPECT_EQ(run(set({u"Count"_s, u"7"_s, u"--type"_s, u"number"_s})).code, exitcode::Done);
  EXPECT_EQ(run(set({u"Plain"_s, u"7"_s})).code, exitcode::Done);
  EXPECT_EQ(run(set({u"Due"_s, u"2026-11-22"_s, u"--type"_s, u"date"_s})).code, exitcode::Done);
  const Note changed = read(NoteId(0x8FA));
  EXPECT_EQ(changed.find(u"Size")->value, numberValue(-2.5));
  EXPECT_EQ(changed.find(u"Count")->value, numberValue(7));
  EXPECT_EQ(changed.find(u"Plain")->value, textValue(u"7"));
  const Value day = itemValues(*changed.find(u"Day")).at(0), due = itemValues(*changed.find(u"Due")).at(0);
  EXPECT_TRUE(day == Value(DateTime{QDate(2026, 11, 23), QTime(0, 30)}));
  EXPECT_TRUE(due == Value(DateTime{QDate(2026, 11, 22), QTime()}));
}

// Who may read or change a document is told by marks on the item; they stay.
TEST_F(Writing, SetKeepsReadersAuthorsAndNames) {
  Note note = memo(u"x"_s);
  const quint16 names = itemflag::Summary | itemflag::Names;
  note.add(u"Who"_s, names | itemflag::Readers, textValue(u"CN=Ada/O=Acme"));
  note.add(u"By"_s, names | itemflag::Authors, textValue(u"CN=Ada/O=Acme"));
  note.add(u"To"_s, names, textValue(u"CN=Ada/O=Acme"));
  save(note);
  for (const char16_t* name : {u"Who", u"By", u"To"})
    EXPECT_EQ(run(set({QString::fromUtf16(name), u"CN=Carl/O=Acme"_s})).code, exitcode::Done);
  const Note changed = read(NoteId(0x8FA));
  EXPECT_EQ(changed.find(u"Who")->flags, names | itemflag::Readers);
  EXPECT_EQ(changed.find(u"By")->flags, names | itemflag::Authors);
  EXPECT_EQ(changed.find(u"To")->flags, names);
  EXPECT_EQ(changed.text(u"Who"), u"CN=Carl/O=Acme"_s);
}

TEST_F(Writing, SetAsksFirst) {
  save(memo(u"Old"_s));
  const QStringList command{u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"Subject"_s, u"New"_s};
  EXPECT_EQ(run(command).code, exitcode::Failed);
  answer = "no\n";
  EXPECT_EQ(run(command).code, exitcode::Failed);
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"Old"_s);
  answer = "YES\n";
  const CommandResult result = run(command);
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_TRUE(result.error.startsWith(u"Set \"Subject\" of note 000008FA in mail.nsf? [y/N]"_s));
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"New"_s);
}

}  // namespace
}  // namespace lens
