// What --json writes is what the published schema says, no more and no less.
#include "command/command_fixture.h"
#include "command/json_schema.h"
#include "embedded/format/source_formula.h"
#include "embedded/nsf/made_samples.h"

namespace lens {
namespace {

class Schema : public CommandTest {
 protected:
  Schema()
      : schema(QJsonDocument::fromJson(contentOf(QStringLiteral(LENS_SOURCE_DIR "/docs/command.schema.json")))
                   .object()) {
    Note note = memo(u"One \"two\" \u20AC"_s);
    attach(note, u"letter.txt"_s, "bytes");
    note.add(u"Size"_s, itemflag::Sign, numberListValue({1, 2.5}));
    note.add(u"Day"_s, itemflag::Seal, timeValue(timeDateNow()));
    note.add(u"Odd"_s, itemflag::Protected, rawValue(itemtype::UserId, "??"));
    save(note);
    workspace->copyDatabase({{}, u"mail.nsf"_s}, {{}, u"copy.nsf"_s});
    save(memo(u"Added"_s));
    Note changed = read(NoteId(0x8FA));
    changed.header.parent = Unid::create();
    changed.items.removeLast();
    mail->notes().save(changed);
  }
  void expectFits(const QString& definition, const QStringList& arguments) {
    const auto objects = run(arguments + QStringList{u"--json"_s}).objects();
    EXPECT_FALSE(objects.isEmpty()) << definition.toStdString();
    for (const QJsonObject& object : objects) EXPECT_EQ(schema.faults(definition, object), QStringList());
    seen += definition;
  }

  // Each object one of them, and each of them is met.
  void expectFitsOneOf(const QStringList& definitions, const QStringList& arguments) {
    QStringList met;
    for (const QJsonObject& object : run(arguments + QStringList{u"--json"_s}).objects()) {
      const QString which = definitions.value(object[u"kind"] == u"stub"_s ? 1 : 0);
      EXPECT_EQ(schema.faults(which, object), QStringList());
      if (!met.contains(which)) met += which;
    }
    EXPECT_EQ(met.size(), definitions.size());
    seen += met;
  }

  JsonSchema schema;
  QStringList seen;
};

TEST_F(Schema, FitsWhatEveryCommandWrites) {
  expectFits(u"database"_s, {u"databases"_s});
  expectFits(u"document"_s, {u"documents"_s, u"mail.nsf"_s});
  expectFits(u"document"_s, {u"documents"_s, u"mail.nsf"_s, u"--formula"_s, u"1"_s});
  expectFits(u"note"_s, {u"show"_s, u"mail.nsf"_s, u"8FA"_s});
  expectFits(u"note"_s, {u"export"_s, u"mail.nsf"_s});
  expectFits(u"note"_s, {u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"Subject"_s, u"x"_s, u"--yes"_s});
  expectFits(u"itemHead"_s, {u"items"_s, u"mail.nsf"_s, u"8FA"_s});
  expectFits(u"itemName"_s, {u"items"_s, u"mail.nsf"_s});
  expectFits(u"import"_s, {u"import"_s, dxlFile(u"a.dxl"_s, 2), u"--into"_s, u"mail.nsf"_s, u"--yes"_s});
  expectFits(u"import"_s, {u"import"_s, dxlFile(u"b.dxl"_s, 2, "<"), u"--into"_s, u"mail.nsf"_s, u"--yes"_s});
  expectFits(u"evaluation"_s, {u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, u"1 : 2"_s});
  expectFits(u"check"_s, {u"check"_s, u"1"_s});
  expectFits(u"check"_s, {u"check"_s, u"1 +"_s});
  expectFits(u"difference"_s, {u"compare"_s, u"mail.nsf"_s, u"copy.nsf"_s});
  expectFits(u"difference"_s, {u"compare"_s, u"copy.nsf"_s, u"mail.nsf"_s});
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$FORMULA"_s, itemflag::Summary, sourceFormulaValue(u"SELECT @All"));
  save(view);
  expectFits(u"formula"_s, {u"formulas"_s, u"mail.nsf"_s});
  expectFits(u"attachment"_s, {u"attachments"_s, u"mail.nsf"_s});
  expectFits(u"attachment"_s, {u"attachments"_s, u"mail.nsf"_s, u"--extract"_s, directory.path()});
  ASSERT_EQ(sqlite3_exec(mail->handle(), "UPDATE note SET items = x'00' WHERE id = 2302", nullptr, nullptr,
                         nullptr),
            0);
  expectFits(u"fault"_s, {u"integrity"_s, u"mail.nsf"_s});
  const QString real = file(u"real.nsf"_s);
  write(real, made::makeFile(made::sampleWithALostNote()).bytes);
  expectFits(u"nsfReport"_s, {u"nsf"_s, u"info"_s, real});
  expectFitsOneOf({u"nsfNote"_s, u"nsfStub"_s}, {u"nsf"_s, u"dump"_s, real});
  expectFitsOneOf({u"nsfNote"_s, u"nsfStub"_s}, {u"nsf"_s, u"dump"_s, real, u"--salvage"_s});
  QStringList pieces{u"nsfWord"_s, u"nsfId"_s,  u"nsfNoteId"_s, u"nsfTime"_s, u"flags"_s,
                     u"item"_s,    u"noteId"_s, u"unid"_s,      u"value"_s,   u"way"_s};
  QStringList unused = schema.definitions();
  unused.removeIf([&](const QString& name) { return seen.contains(name) || pieces.contains(name); });
  EXPECT_EQ(unused, QStringList());
}

TEST_F(Schema, FindsWhatDoesNotFit) {
  const auto rows = run({u"documents"_s, u"mail.nsf"_s, u"--json"_s}).objects();
  ASSERT_FALSE(rows.isEmpty());
  QJsonObject row = rows[0];
  EXPECT_EQ(schema.faults(u"document"_s, row), QStringList());
  row[u"more"] = 1;
  EXPECT_FALSE(schema.faults(u"document"_s, row).isEmpty());
  row.remove(u"more");
  row[u"noteId"] = u"8FA"_s;
  EXPECT_FALSE(schema.faults(u"document"_s, row).isEmpty());
  row.remove(u"noteId");
  EXPECT_FALSE(schema.faults(u"document"_s, row).isEmpty());
}

}  // namespace
}  // namespace lens
