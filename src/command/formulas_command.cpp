// formulas: every formula of a database, as its author wrote it.
#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/document_walk.h"
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

// In the order of formula::Sureness.
constexpr QStringView kSureness[] = {u"proven", u"context", u"guess", u"unnamed"};

// What a reader should know of it besides; "" when there is nothing.
QString remarkOn(const Reading& reading) {
  if (reading.state == Reading::State::Hidden) return CommandText::tr("the formula is hidden");
  if (reading.state == Reading::State::Unreadable)
    return CommandText::tr("cannot be read: %1").arg(reading.problem);
  QStringList remarks;
  if (!reading.problem.isEmpty())
    remarks += reading.problem;
  else if (!reading.unproven.isEmpty())
    remarks += CommandText::tr("read with names that are not proven: %1").arg(reading.unproven.join(u", "_s));
  if (!reading.exact) remarks += CommandText::tr("a date in it says less than the code does");
  return remarks.join(u"; "_s);
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
        .text("sureness", kSureness[std::size_t(reading.sureness)])
        .texts("unproven", reading.unproven)
        .text("source", reading.source)
        .text("problem", reading.problem)
        .flag("exact", reading.exact);
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
  qint64 damaged = 0;
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
      },
      [&](NoteId, const QString&) { return ++damaged > 0; });
  requireNothingLeftOut(call, damaged);
  return all ? exitcode::Done : exitcode::Found;
}

}  // namespace lens
