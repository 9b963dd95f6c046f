// What commands show: databases, documents, items, attachments, formulas.
#include "command/command_fixture.h"
#include "embedded/search/full_text.h"
#include "embedded/views/view_documents.h"
#include "support/in_zone.h"

namespace lens {
namespace {

class Reading : public CommandTest {
 protected:
  // Three memos and a task: 8FA to 906.
  void fill() {
    for (const char16_t* subject : {u"First", u"Second", u"Third"}) save(memo(QString::fromUtf16(subject)));
    Note task;
    task.add(u"Form"_s, itemflag::Summary, textValue(u"Task"));
    task.add(u"Subject"_s, itemflag::Summary, textListValue({u"Pumps"_s, u"more"_s}));
    save(task);
    Note profile = memo(u"profile"_s);
    profile.add(u"$Name"_s, itemflag::Summary, textValue(u"$profile_011prefs"));
    save(profile);
    Note form;
    form.header.noteClass = noteclass::Form;
    form.add(u"$TITLE"_s, 0, textValue(u"Memo"));
    save(form);
  }
  void makeView(const QString& title, const QString& selection) {
    Note view;
    view.header.noteClass = noteclass::View;
    view.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    view.add(u"$Formula"_s, itemflag::Summary, textValue(selection));
    save(view);
  }
  QStringList subjects(const QStringList& options) {
    QStringList found;
    for (const QJsonObject& row :
         run(QStringList{u"documents"_s, u"mail.nsf"_s, u"--json"_s} + options).objects())
      found += row[u"subject"].toString();
    return found;
  }
};

TEST_F(Reading, DatabasesAreListedWithTheirServers) {
  workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"disc/ideas.nsf"_s, {u"Ideas"_s, {}, {}, {}, {}, false});
  write(place() + u"/data/foreign.nsf"_s, "something else");
  const CommandResult result = run({u"databases"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(result.error, QString());
  EXPECT_EQ(result.lines(), QStringList({u"foreign.nsf"_s.leftJustified(42) + u"(cannot be read)"_s,
                                         u"mail.nsf"_s.leftJustified(42) + u"Karin's mail"_s,
                                         u"Hub/Acme!!disc/ideas.nsf"_s.leftJustified(42) + u"Ideas"_s}));
}

TEST_F(Reading, DatabasesOfOneServerAsJson) {
  workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"disc/ideas.nsf"_s,
                            {u"Ideas"_s, {}, {}, u"Acme"_s, {}, false});
  const auto rows = run({u"databases"_s, u"--server"_s, u"Hub/Acme"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 1);
  EXPECT_EQ(rows[0][u"database"], u"Hub/Acme!!disc/ideas.nsf"_s);
  EXPECT_EQ(rows[0][u"server"], u"CN=Hub/O=Acme"_s);
  EXPECT_EQ(rows[0][u"path"], u"disc/ideas.nsf"_s);
  EXPECT_EQ(rows[0][u"title"], u"Ideas"_s);
  EXPECT_EQ(rows[0][u"template"], u"Acme"_s);
  EXPECT_EQ(rows[0][u"replicaId"].toString().size(), 16);
}

// What is listed is what the other commands take.
TEST_F(Reading, ADatabaseWithTheMarkOfServersInItsNameCanBeNamed) {
  workspace->createDatabase({}, u"a!!b.nsf"_s, {});
  const auto rows = run({u"databases"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[0][u"database"], u"!!a!!b.nsf"_s);
  EXPECT_EQ(rows[1][u"database"], u"mail.nsf"_s);
  for (const QJsonObject& row : rows)
    EXPECT_EQ(run({u"documents"_s, row[u"database"].toString()}).code, exitcode::Done);
}

TEST_F(Reading, DocumentsOfADatabaseOnAServer) {
  const auto ideas = workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"ideas.nsf"_s, {});
  Note note = memo(u"An idea"_s);
  ideas->notes().save(note);
  EXPECT_EQ(run({u"documents"_s, u"hub/acme!!ideas"_s}).out, u"000008FA  Memo                  An idea\n"_s);
}

TEST_F(Reading, DocumentsAreListedWithoutProfilesAndDesign) {
  fill();
  const CommandResult result = run({u"documents"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(
      result.lines(),
      QStringList({u"000008FA  Memo                  First"_s, u"000008FE  Memo                  Second"_s,
                   u"00000902  Memo                  Third"_s, u"00000906  Task                  Pumps"_s}));
}

// Whether a scan of the engine lists them or the object model: nobody sees a difference.
TEST_F(Reading, DocumentsAreTheSameBehindAnyDoor) {
  fill();
  save(memo(u"Gr\u00FC\u00DFe \u001B[2J \u20AC \"x\"\n2"_s));
  save(Note());
  Note numbers;
  numbers.add(u"FORM"_s, itemflag::Summary, numberValue(7));
  numbers.add(u"Subject"_s, 0, timeValue(timeDateNow()));
  save(numbers);
  for (const QStringList& options : {QStringList(), QStringList(u"--json"_s)}) {
    clientBehindDoors = false;
    const CommandResult engine = run(QStringList{u"documents"_s, u"mail.nsf"_s} + options);
    clientBehindDoors = true;
    const CommandResult model = run(QStringList{u"documents"_s, u"mail.nsf"_s} + options);
    EXPECT_EQ(engine.lines().size(), 7);
    EXPECT_EQ(engine.out, model.out);
  }
}

TEST_F(Reading, DocumentsOfAViewComeInItsOrder) {
  fill();
  makeView(u"Memos|m"_s, u"SELECT Form = \"Memo\""_s);
  EXPECT_EQ(subjects({u"--view"_s, u"m"_s}), QStringList({u"First"_s, u"Second"_s, u"Third"_s}));
}

TEST_F(Reading, DocumentsOfAFormula) {
  fill();
  EXPECT_EQ(subjects({u"--formula"_s, u"@Contains(Subject; \"ir\")"_s}),
            QStringList({u"First"_s, u"Third"_s}));
}

TEST_F(Reading, DocumentsOfAQuery) {
  fill();
  createFullTextIndex(*mail);
  EXPECT_EQ(subjects({u"--search"_s, u"pumps"_s}), QStringList{u"Pumps"_s});
  EXPECT_EQ(subjects({u"--search"_s, u"nothing"_s}), QStringList());
}

TEST_F(Reading, DocumentsAsJsonHaveTheirUniversalId) {
  fill();
  const auto rows = run({u"documents"_s, u"mail.nsf"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 4);
  EXPECT_EQ(rows[1][u"noteId"], u"000008FE"_s);
  EXPECT_EQ(rows[1][u"unid"], read(NoteId(0x8FE)).header.unid.text());
  EXPECT_EQ(rows[1][u"form"], u"Memo"_s);
}

TEST_F(Reading, ShowTellsEachItemWithTypeFlagsAndValues) {
  Note note = memo(u"Pumps"_s);
  note.add(u"Names"_s, itemflag::Summary | itemflag::Names | itemflag::Sign,
           textListValue({u"Ada"_s, u"Carl"_s}));
  note.add(u"Size"_s, itemflag::Protected, numberListValue({1, 2.5}));
  note.add(u"Select"_s, 0, rawValue(itemtype::UserId, "??"));
  const NoteId id = save(note);
  const CommandResult result = run({u"show"_s, u"mail.nsf"_s, u"8fa"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(result.lines(),
            QStringList({u"Note ID  000008FA"_s, u"UNID     "_s + read(id).header.unid.text(),
                         u"Form                      TEXT          summary"_s, u"    Memo"_s,
                         u"Subject                   TEXT          summary"_s, u"    Pumps"_s,
                         u"Names                     NAMES         summary, signed"_s, u"    Ada"_s,
                         u"    Carl"_s, u"Size                      NUMBERS       protected"_s, u"    1"_s,
                         u"    2.5"_s, u"Select                    USERID"_s}));
}

TEST_F(Reading, ShowAsJsonKeepsTypes) {
  const InZone zone("Europe/Berlin");
  Note note;
  note.add(u"Size"_s, 0, numberValue(2.5));
  note.add(u"Day"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2026, 11, 22))));
  note.add(u"Moment"_s, 0, timeValue(timeDateOf(DateTime{QDate(2026, 11, 22), QTime(10, 50)})));
  note.add(u"Line"_s, 0, textValue(u"one"));
  note.add(u"Line"_s, 0, textValue(u"two"));
  const NoteId id = save(note);
  const auto shown = run({u"show"_s, u"mail.nsf"_s, read(id).header.unid.text(), u"--json"_s}).objects();
  ASSERT_EQ(shown.size(), 1);
  EXPECT_EQ(shown[0][u"noteId"], u"000008FA"_s);
  EXPECT_EQ(QJsonDocument(shown[0][u"items"].toArray()).toJson(QJsonDocument::Compact),
            R"([{"flags":[],"name":"Size","type":"NUMBERS","values":[2.5]},)"
            R"({"flags":["summary"],"name":"Day","type":"DATETIMES","values":["2026-11-22"]},)"
            R"({"flags":[],"name":"Moment","type":"DATETIMES","values":["2026-11-22T10:50:00+01:00"]},)"
            R"({"flags":[],"name":"Line","type":"TEXT","values":["one"]},)"
            R"({"flags":[],"name":"Line","type":"TEXT","values":["two"]}])");
}

TEST_F(Reading, ShowTakesSpecialNotes) {
  Note icon;
  icon.header.noteClass = noteclass::Icon;
  icon.add(u"$TITLE"_s, 0, textValue(u"The icon"));
  save(icon);
  EXPECT_TRUE(run({u"show"_s, u"mail.nsf"_s, u"FFFF0010"_s}).out.contains(u"The icon"_s));
}

TEST_F(Reading, ItemsOfADocument) {
  save(memo(u"x"_s));
  EXPECT_EQ(run({u"items"_s, u"mail.nsf"_s, u"8FA"_s}).lines(),
            QStringList({u"Form                      TEXT          summary"_s,
                         u"Subject                   TEXT          summary"_s}));
  const auto rows = run({u"items"_s, u"mail.nsf"_s, u"8FA"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[1][u"name"], u"Subject"_s);
  EXPECT_EQ(rows[1][u"type"], u"TEXT"_s);
  EXPECT_EQ(rows[1][u"flags"].toArray(), QJsonArray{u"summary"_s});
  EXPECT_FALSE(rows[1].contains(u"values"));
}

TEST_F(Reading, ItemNamesOfADatabaseAreCounted) {
  fill();
  Note other;
  other.add(u"SUBJECT"_s, 0, numberValue(1));
  save(other);
  EXPECT_EQ(run({u"items"_s, u"mail.nsf"_s}).lines(),
            QStringList({u"Form                      4             TEXT"_s,
                         u"Subject                   5             NUMBERS, TEXT"_s}));
  const auto rows = run({u"items"_s, u"mail.nsf"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[1][u"count"], 5);
  EXPECT_EQ(rows[1][u"types"].toArray().at(0).toObject()[u"count"], 1);
}

TEST_F(Reading, EvaluateGivesValuesOfEveryKindAndSavesNothing) {
  const InZone zone("Europe/Berlin");
  save(memo(u"Pumps"_s));
  const auto evaluate = [&](const QString& formula) {
    const CommandResult result = run({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, formula});
    EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
    return result.out;
  };
  EXPECT_EQ(evaluate(u"Subject + \" and \" + Form"_s), u"Pumps and Memo\n"_s);
  EXPECT_EQ(evaluate(u"1 : 2.5"_s), u"1\n2.5\n"_s);
  EXPECT_EQ(evaluate(u"\"a\" : \"b\""_s), u"a\nb\n"_s);
  EXPECT_EQ(evaluate(u"@Date(2026; 11; 22)"_s),
            textOf(DateTime{QDate(2026, 11, 22), {}}, Regional(QLocale::c())) + u'\n');
  EXPECT_EQ(evaluate(u"@UpperCase(\"\u00E4\")"_s), u"\u00C4\n"_s);
  EXPECT_EQ(evaluate(u"FIELD Subject := \"other\"; Subject"_s), u"other\n"_s);
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"Pumps"_s);
  const auto json = run({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, u"1 : 2.5"_s, u"--json"_s}).objects();
  ASSERT_EQ(json.size(), 1);
  EXPECT_EQ(json[0][u"values"].toArray(), QJsonArray({1, 2.5}));
}

TEST_F(Reading, CheckPointsAtTheMistake) {
  const CommandResult good = run({u"check"_s, u"@UpperCase(Subject)"_s});
  EXPECT_EQ(good.code, exitcode::Done);
  EXPECT_EQ(good.out, u"The formula is correct.\n"_s);
  const CommandResult bad = run({u"check"_s, u"x := 1;\n@Upper(x)"_s});
  EXPECT_EQ(bad.code, exitcode::Found);
  EXPECT_EQ(bad.out, QString());
  EXPECT_EQ(bad.errorLines().size(), 1);
  EXPECT_TRUE(bad.error.contains(u"(line 2, character 1)"_s)) << bad.error.toStdString();
  const auto json = run({u"check"_s, u"x := 1;\n@Upper(x)"_s, u"--json"_s}).objects();
  ASSERT_EQ(json.size(), 1);
  EXPECT_EQ(json[0][u"correct"], false);
  EXPECT_EQ(json[0][u"line"], 2);
  EXPECT_EQ(json[0][u"character"], 1);
  EXPECT_EQ(json[0][u"offset"], 8);
  EXPECT_EQ(json[0][u"length"], 6);
  EXPECT_EQ(run({u"check"_s, u"1"_s, u"--json"_s}).objects().value(0), QJsonObject({{u"correct"_s, true}}));
}

TEST_F(Reading, CheckCountsCharactersBehindLettersOfTheCodePage) {
  const auto json = run({u"check"_s, u"\"\u00E4\u20AC\" + @None(1)"_s, u"--json"_s}).objects();
  ASSERT_EQ(json.size(), 1);
  EXPECT_EQ(json[0][u"offset"], 7);
  EXPECT_EQ(json[0][u"character"], 8);
}

TEST_F(Reading, AttachmentsAreListed) {
  Note note = memo(u"x"_s);
  attach(note, u"letter.txt"_s, "12345");
  attach(note, u"..\\..\\evil\u001B.txt"_s, "1");
  save(note);
  save(memo(u"without"_s));
  const CommandResult result = run({u"attachments"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.lines(), QStringList({u"000008FA             5  letter.txt"_s,
                                         u"000008FA             1  ..\\..\\evil\uFFFD.txt"_s}));
  const auto rows = run({u"attachments"_s, u"mail.nsf"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[0][u"size"], 5);
  EXPECT_EQ(rows[1][u"name"], u"..\\..\\evil\u001B.txt"_s);
  EXPECT_FALSE(rows[0].contains(u"file"));
}

TEST_F(Reading, AttachmentsAreExtractedUnderSafeNamesThatAreTold) {
  Note first = memo(u"x"_s), second = memo(u"y"_s);
  attach(first, u"letter.txt"_s, "one");
  attach(first, u"../../evil.sh"_s, "two");
  attach(second, u"Letter.txt"_s, "three");
  save(first);
  save(second);
  QDir().mkpath(file(u"out"_s));
  const CommandResult result = run({u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, file(u"out"_s)});
  EXPECT_EQ(result.code, exitcode::Done) << result.error.toStdString();
  EXPECT_EQ(filesIn(file(u"out"_s)), QStringList({u"Letter (2).txt"_s, u"evil.sh"_s, u"letter.txt"_s}));
  EXPECT_EQ(contentOf(file(u"out/evil.sh"_s)), "two");
  EXPECT_EQ(contentOf(file(u"out/Letter (2).txt"_s)), "three");
  EXPECT_EQ(result.errorLines().size(), 2);
  EXPECT_TRUE(result.error.contains(u"\"../../evil.sh\": \"evil.sh\""_s)) << result.error.toStdString();
  EXPECT_TRUE(result.lines().value(0).endsWith(u"letter.txt -> "_s + file(u"out/letter.txt"_s)));
}

TEST_F(Reading, OfTwoAttachmentsOfOneNameTheSecondIsToldAndNotTakenForTheFirst) {
  Note note = memo(u"x"_s);
  attach(note, u"a.txt"_s, "one");
  attach(note, u"a.txt"_s, "two");
  save(note);
  const CommandResult result = run({u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, directory.path()});
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_EQ(contentOf(file(u"a.txt"_s)), "one");
  EXPECT_TRUE(result.error.contains(u"a.txt"_s)) << result.error.toStdString();
  EXPECT_EQ(filesIn(directory.path()), QStringList{u"a.txt"_s});
}

TEST_F(Reading, IntegrityOfAWholeDatabaseAndOfADamagedOne) {
  fill();
  EXPECT_EQ(run({u"integrity"_s, u"mail.nsf"_s}).out, u"mail.nsf: 6 notes, 0 attachments, 0 faults\n"_s);
  ASSERT_EQ(sqlite3_exec(mail->handle(), "UPDATE note SET items = x'00' WHERE id = 2302", nullptr, nullptr,
                         nullptr),
            0);
  const CommandResult damaged = run({u"integrity"_s, u"mail.nsf"_s});
  EXPECT_EQ(damaged.code, exitcode::Found);
  EXPECT_EQ(damaged.lines().size(), 2);
  EXPECT_TRUE(damaged.out.startsWith(u"note 000008FE: "_s)) << damaged.out.toStdString();
  const auto json = run({u"integrity"_s, u"mail.nsf"_s, u"--json"_s}).objects();
  ASSERT_EQ(json.size(), 1);
  EXPECT_EQ(json[0][u"noteId"], u"000008FE"_s);
}

TEST_F(Reading, CompareTellsBothWays) {
  fill();
  workspace->copyDatabase({{}, u"mail.nsf"_s}, {{}, u"copy.nsf"_s});
  EXPECT_EQ(run({u"compare"_s, u"mail.nsf"_s, u"copy.nsf"_s}).code, exitcode::Done);
  Note changed = read(NoteId(0x8FE));
  changed.find(u"Subject")->value = textValue(u"Second, changed");
  changed.add(u"New"_s, 0, textValue(u""));
  mail->notes().save(changed);
  const NoteId added = save(memo(u"Added"_s));
  const CommandResult result = run({u"compare"_s, u"copy.nsf"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Found);
  EXPECT_EQ(result.lines(),
            QStringList({u"~ "_s + changed.header.unid.text() + u"  Second"_s, u"    ~ Subject"_s,
                         u"    + New"_s, u"+ "_s + read(added).header.unid.text() + u"  Added"_s,
                         u"0 only in copy.nsf, 1 only in mail.nsf, 1 changed"_s}));
  const auto rows = run({u"compare"_s, u"mail.nsf"_s, u"copy.nsf"_s, u"--json"_s}).objects();
  ASSERT_EQ(rows.size(), 2);
  EXPECT_EQ(rows[0][u"difference"], u"changed"_s);
  EXPECT_EQ(rows[0][u"items"].toArray().at(1).toObject(),
            QJsonObject({{u"name"_s, u"New"_s}, {u"difference"_s, u"onlyInFirst"_s}}));
  EXPECT_EQ(rows[1][u"difference"], u"onlyInFirst"_s);
  EXPECT_FALSE(rows[1].contains(u"secondNoteId"));
}

}  // namespace
}  // namespace lens
