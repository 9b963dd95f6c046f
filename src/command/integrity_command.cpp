// integrity: whether a database is whole.
#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "embedded/checks/integrity_check.h"
#include "notes/literals.h"
#include "records/json_output.h"

namespace lens {
namespace {

void writeFault(CommandCall& call, const IntegrityFault& fault) {
  QByteArray id;
  if (fault.note) appendEightDigits(id, fault.note.value());
  if (call.json()) {
    JsonLine json;
    json.text("noteId", QString::fromLatin1(id)).text("fault", fault.what);
    return call.console.out().line(json.finish());
  }
  QByteArray line = fault.note ? "note " + id : QByteArray("file");
  line += ": ";
  appendPrintable(line, fault.what);
  call.console.out().line(line);
}

}  // namespace

int checkDatabase(CommandCall& call) {
  const std::shared_ptr<Database> store = openStore(call.doors, call.name, call.arguments.first());
  IntegrityReport report = checkIntegrity(
      *store, [&](const IntegrityFault& fault) { writeFault(call, fault); },
      [&](qint64 done, qint64 all) {
        call.console.progress(call.arguments.first(), done, all);
        return true;
      });
  // What a real database has lost is not in its copy.
  if (const auto real = call.doors.workspace->realDatabase(*store); real && !real->isComplete) {
    writeFault(call, {{}, real->warning()});
    ++report.faults;
  }
  if (!call.json()) {
    QByteArray line;
    appendPrintable(
        line,
        u"%1: %2, %3, %4"_s.arg(
            call.arguments.first(), counted(report.notes, CommandText::tr("note"), CommandText::tr("notes")),
            counted(report.attachments, CommandText::tr("attachment"), CommandText::tr("attachments")),
            counted(report.faults, CommandText::tr("fault"), CommandText::tr("faults"))));
    call.console.out().line(line);
  }
  return report.faults > 0 ? exitcode::Found : exitcode::Done;
}

}  // namespace lens
