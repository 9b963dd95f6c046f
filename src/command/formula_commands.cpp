// evaluate and check: formulas, as the formula tools of the main window take them.
#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/formula_run.h"
#include "command/text_output.h"
#include "notes/literals.h"
#include "notes/note_reading.h"
#include "records/json_output.h"
#include "shell/text_routines.h"

namespace lens {

// Nothing is saved, whatever the formula assigns.
int evaluateFormula(CommandCall& call) {
  const QString& name = call.arguments[0];
  const NotesDatabase database = openDatabase(call.doors, name);
  const NotesDocument document = findDocument(database, name, call.arguments[1]);
  QVector<Value> values;
  try {
    values = evaluateOn(*call.doors.capi, call.arguments[2], networkPath(*call.doors.capi, database),
                        document.noteId());
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(),
                       CommandText::tr("%1, note %2: %3").arg(name, call.arguments[1], error.description()));
  }
  Output& out = call.console.out();
  if (call.json()) {
    JsonLine json;
    json.text("noteId", eightDigits(document.noteId())).beginArray("values");
    for (const Value& value : std::as_const(values)) json.element(value);
    out.line(json.finish());
    return exitcode::Done;
  }
  for (const Value& value : std::as_const(values)) {
    QByteArray line;
    appendLines(line, textOf(value, call.doors.regional), 0);
    out.line(line);
  }
  return exitcode::Done;
}

int checkFormula(CommandCall& call) {
  const auto mistake = mistakeIn(*call.doors.capi, call.arguments.first());
  if (call.json()) {
    JsonLine json;
    json.flag("correct", !mistake);
    if (mistake)
      json.text("reason", mistake->reason)
          .number("line", mistake->line)
          .number("character", mistake->character)
          .number("offset", mistake->offset)
          .number("length", mistake->length);
    call.console.out().line(json.finish());
  }
  if (!mistake) {
    if (!call.json()) call.console.out().line(CommandText::tr("The formula is correct.").toUtf8());
    return exitcode::Done;
  }
  call.console.say(u"%1: \"%2\": %3"_s.arg(call.name, call.arguments.first(), mistake->text()));
  return exitcode::Found;
}

}  // namespace lens
