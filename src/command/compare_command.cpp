// compare: what two databases differ in, both ways.
#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "embedded/checks/database_comparison.h"
#include "notes/literals.h"
#include "records/json_output.h"

namespace lens {
namespace {

struct Words {
  const char* json;
  char mark;
};

Words wordsOf(Difference kind) {
  switch (kind) {
    case Difference::OnlyInFirst:
      return {"onlyInFirst", '-'};
    case Difference::OnlyInSecond:
      return {"onlyInSecond", '+'};
    default:
      return {"changed", '~'};
  }
}

// What is other about a note that both have, besides its items.
QStringList propertiesOf(const NoteDifference& note) {
  QStringList properties;
  if (note.otherClass) properties += u"class"_s;
  if (note.otherParent) properties += u"parent"_s;
  return properties;
}

QString idText(const NoteHeader& header) {
  QByteArray text;
  appendEightDigits(text, header.id.value());
  return QString::fromLatin1(text);
}

QByteArray jsonLine(const NoteDifference& note) {
  const NoteHeader& header = note.first.id ? note.first : note.second;
  JsonLine json;
  json.text("difference", QLatin1String(wordsOf(note.kind).json).toString());
  json.text("unid", header.unid.text());
  if (note.first.id) json.text("firstNoteId", idText(note.first));
  if (note.second.id) json.text("secondNoteId", idText(note.second));
  json.number("class", header.noteClass).text("title", note.title).texts("properties", propertiesOf(note));
  json.beginArray("items");
  for (const ItemDifference& item : note.items)
    json.beginObject()
        .text("name", item.name)
        .text("difference", QLatin1String(wordsOf(item.kind).json).toString())
        .end();
  return json.finish();
}

QByteArray textLines(const NoteDifference& note) {
  const NoteHeader& header = note.first.id ? note.first : note.second;
  QByteArray lines(1, wordsOf(note.kind).mark);
  lines += ' ' + header.unid.text().toLatin1() + "  ";
  appendPrintable(lines, note.title);
  while (lines.endsWith(' ')) lines.chop(1);
  for (const QString& property : propertiesOf(note)) lines += "\n    ~ (" + property.toLatin1() + ')';
  for (const ItemDifference& item : note.items) {
    lines += "\n    " + QByteArray(1, wordsOf(item.kind).mark) + ' ';
    appendPrintable(lines, item.name);
  }
  return lines;
}

}  // namespace

int compareTwoDatabases(CommandCall& call) {
  requireEngine(call.doors, call.name);
  const std::shared_ptr<Database> first = openStore(call.doors, call.name, call.arguments[0]),
                                  second = openStore(call.doors, call.name, call.arguments[1]);
  Output& out = call.console.out();
  qint64 onlyFirst = 0, onlySecond = 0, changed = 0;
  const auto tell = [&](const NoteDifference& note) {
    onlyFirst += note.kind == Difference::OnlyInFirst;
    onlySecond += note.kind == Difference::OnlyInSecond;
    changed += note.kind == Difference::Changed;
    out.line(call.json() ? jsonLine(note) : textLines(note));
  };
  compareDatabases(*first, *second, tell, [&](qint64 done, qint64 all) {
    call.console.progress(call.name, done, all);
    return true;
  });
  if (!call.json()) {
    QByteArray line;
    appendPrintable(line, CommandText::tr("%1 only in %2, %3 only in %4, %5 changed")
                              .arg(QString::number(onlyFirst), call.arguments[0], QString::number(onlySecond),
                                   call.arguments[1], QString::number(changed)));
    out.line(line);
  }
  return onlyFirst + onlySecond + changed > 0 ? exitcode::Found : exitcode::Done;
}

}  // namespace lens
