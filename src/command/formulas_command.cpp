// formulas: every formula of a database, as its author wrote it.
#include "command/command_functions.h"
#include "command/text_output.h"
#include "embedded/checks/note_walk.h"
#include "embedded/formula_context/note_formulas.h"
#include "notes/literals.h"
#include "records/json_output.h"

namespace lens {
namespace {

using Reading = formula::CompiledReading;

QString stateOf(const Reading& reading) {
  if (reading.state == Reading::State::Hidden) return u"hidden"_s;
  return reading.state == Reading::State::Source ? u"source"_s : u"unreadable"_s;
}

QString surenessOf(const Reading& reading) {
  switch (reading.sureness) {
    case formula::Sureness::Proven:
      return u"proven"_s;
    case formula::Sureness::Context:
      return u"context"_s;
    case formula::Sureness::Guess:
      return u"guess"_s;
    case formula::Sureness::Unnamed:
      break;
  }
  return u"unnamed"_s;
}

// What a reader should know of it besides; "" when there is nothing.
QString remarkOn(const Reading& reading) {
  if (reading.state == Reading::State::Hidden) return u"the formula is hidden"_s;
  if (reading.state == Reading::State::Unreadable) return u"cannot be read: "_s + reading.problem;
  if (!reading.problem.isEmpty()) return reading.problem;
  if (reading.unproven.isEmpty()) return {};
  return u"read with names that are not proven: "_s + reading.unproven.join(u", "_s);
}

// Of a design note; a document may hold formulas too, in a button for one.
QString titleOf(const Note& note) {
  const QString title = note.text(u"$TITLE"_s);
  return title.isEmpty() ? note.text(u"Subject"_s) : title;
}

void writeFormula(CommandCall& call, const Note& note, const NoteFormula& formula) {
  const Reading& reading = formula.reading;
  QByteArray id;
  appendEightDigits(id, note.header.id.value());
  Output& out = call.console.out();
  if (call.json()) {
    JsonLine json;
    json.text("noteId", QString::fromLatin1(id))
        .text("title", titleOf(note))
        .text("item", formula.item)
        .text("place", formula.place)
        .text("state", stateOf(reading))
        .text("sureness", surenessOf(reading))
        .texts("unproven", reading.unproven)
        .text("source", reading.source)
        .text("problem", reading.problem);
    return out.line(json.finish());
  }
  QByteArray line = id + "  ";
  appendColumn(line, titleOf(note), 30);
  appendPrintable(line, formula.place.isEmpty() ? formula.item : formula.item + u", "_s + formula.place);
  if (const QString remark = remarkOn(reading); !remark.isEmpty()) {
    line += " (";
    appendPrintable(line, remark);
    line += ')';
  }
  out.line(line);
  if (reading.source.isEmpty()) return;
  line = "    ";
  appendLines(line, reading.source, 4);
  out.line(line);
}

}  // namespace

int listFormulas(CommandCall& call) {
  const QString& name = call.arguments.first();
  const std::shared_ptr<Database> store = openStore(call.doors, call.name, name);
  bool all = true;
  walkNotes(
      *store,
      [&](const Note& note) {
        for (const NoteFormula& formula : formulasOf(note)) {
          writeFormula(call, note, formula);
          all = all && formula.reading.state != Reading::State::Unreadable;
        }
        return true;
      },
      [&](qint64 done, qint64 count) {
        call.console.progress(name, done, count);
        return true;
      });
  return all ? exitcode::Done : exitcode::Found;
}

}  // namespace lens
