// nsf: what a real database of the platform holds, straight from its file; nothing is copied or kept.
#include <QJsonDocument>

#include "command/command_functions.h"
#include "command/command_table.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "embedded/nsf/nsf_database.h"
#include "embedded/nsf/nsf_json.h"
#include "notes/literals.h"

namespace lens {
namespace {

std::unique_ptr<NsfDatabase> openFile(CommandCall& call) {
  const QString& path = call.arguments[1];
  QString reason;
  auto source = NsfFileSource::open(path, reason);
  if (!source)
    throw RuntimeError(enginefault::CannotOpen,
                       CommandText::tr("%1: the file cannot be read (%2)").arg(path, reason));
  source->setWatch([&call] { return call.console.requireGoingOn(), true; });
  const NsfReading reading = call.has(u"salvage") ? NsfReading::Salvage : NsfReading::Proven;
  return std::make_unique<NsfDatabase>(std::move(source), reading);
}

void requireOpen(const CommandCall& call, const NsfDatabase& database) {
  if (!database.isOpen())
    throw RuntimeError(enginefault::CannotOpen, call.arguments[1] + u": "_s + database.report().refused);
}

// Each note in turn; how far it is shown meanwhile.
void forEachNote(CommandCall& call, NsfDatabase& database, const std::function<void(const NsfNote&)>& visit) {
  qint64 done = 0;
  const qint64 all = database.report().notesFound;
  database.forEachNote([&](const NsfNote& note) {
    call.console.progress(call.arguments[1], ++done, all);
    visit(note);
    return true;
  });
}

void writeJson(CommandCall& call, const QJsonObject& object) {
  call.console.out().line(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void writeText(CommandCall& call, const NsfNote& note) {
  Output& out = call.console.out();
  QByteArray line = "note ";
  appendEightDigits(line, note.header.id.value());
  appendPrintable(
      line,
      u"  %1  class %2"_s.arg(note.header.unid.text()).arg(note.header.noteClass, 4, 16, QLatin1Char('0')));
  out.line(line);
  for (const NsfItem& item : note.items) {
    line = "    ";
    appendColumn(line, item.item.name, 24);
    appendPrintable(line, u"type %1  flags %2  %3"_s.arg(item.item.type(), 4, 16, QLatin1Char('0'))
                              .arg(item.item.flags, 4, 16, QLatin1Char('0'))
                              .arg(counted(item.item.data().size(), u"byte"_s, u"bytes"_s)));
    if (item.state != NsfItemState::Whole) line += "  " + QByteArray(nsfStateText(item.state).data());
    out.line(line);
  }
}

void writeText(CommandCall& call, const NsfStub& stub) {
  QByteArray line = "stub ";
  appendEightDigits(line, stub.id.value());
  call.console.out().line(line + "  " + stub.unid.text().toLatin1());
}

int exitCodeOf(const NsfReport& report) {
  return report.isComplete() ? exitcode::Done : exitcode::Found;
}

// Another program may write the file meanwhile.
void tellOfChanges(CommandCall& call, const NsfDatabase& database) {
  if (database.isOpen() && database.hasChangedSince())
    call.console.say(
        CommandText::tr("%1: %2: the file was written while it was read: what is told may be of two states")
            .arg(call.name, call.arguments[1]));
}

void writeText(CommandCall& call, const NsfAcl& acl) {
  Output& out = call.console.out();
  out.line("Access control list: " + counted(acl.entries.size(), u"entry"_s, u"entries"_s).toUtf8());
  for (const NsfAclEntry& entry : acl.entries) {
    QByteArray line = "    ";
    appendColumn(line, entry.name, 40);
    appendPrintable(line, u"level %1  flags %2  %3"_s.arg(entry.level)
                              .arg(entry.flags, 4, 16, QLatin1Char('0'))
                              .arg(acl.rolesOf(entry).join(u' ')));
    while (line.endsWith(' ')) line.chop(1);
    out.line(line);
  }
}

// Reads every note and the list, since the report counts what it meets. Of a database that is refused its
// header still tells something.
int tell(CommandCall& call) {
  const auto database = openFile(call);
  if (database->refusal() == NsfRefusal::NotADatabase) requireOpen(call, *database);
  forEachNote(call, *database, [](const NsfNote&) {});
  const std::optional<NsfAcl> acl = database->acl();
  const NsfReport& report = database->report();
  tellOfChanges(call, *database);
  if (call.json()) {
    QJsonObject json = report.json();
    if (acl) json[u"acl"_s] = nsfAclJson(*acl);
    writeJson(call, json);
    requireOpen(call, *database);
    return exitCodeOf(report);
  }
  QByteArray lines;
  for (const QString& line : report.text().split(u'\n', Qt::SkipEmptyParts)) {
    appendPrintable(lines, line);
    lines += '\n';
  }
  call.console.out().write(lines);
  if (acl) writeText(call, *acl);
  requireOpen(call, *database);
  return exitCodeOf(report);
}

int dump(CommandCall& call) {
  const auto database = openFile(call);
  requireOpen(call, *database);
  forEachNote(call, *database, [&](const NsfNote& note) {
    call.json() ? writeJson(call, nsfNoteJson(note)) : writeText(call, note);
  });
  for (const NsfStub& stub : database->stubs())
    call.json() ? writeJson(call, nsfStubJson(stub)) : writeText(call, stub);
  tellOfChanges(call, *database);
  const int code = exitCodeOf(database->report());
  if (code == exitcode::Found)
    call.console.say(CommandText::tr("%1: %2: not all of it can be read; \"nsf info\" tells what and why")
                         .arg(call.name, call.arguments[1]));
  return code;
}

}  // namespace

int readRealDatabase(CommandCall& call) {
  if (call.arguments[0] == u"info") return tell(call);
  if (call.arguments[0] == u"dump") return dump(call);
  throw WrongUse(CommandText::tr("\"%1\" is neither \"info\" nor \"dump\"").arg(call.arguments[0]));
}

}  // namespace lens
