// export: a database or some of its documents as DXL, JSON or CSV.
#include <QFile>
#include <QSaveFile>
#include <QSet>

#include "command/command_functions.h"
#include "command/command_table.h"
#include "command/command_text.h"
#include "command/document_walk.h"
#include "command/text_output.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/format/item_name.h"
#include "host/save_file.h"
#include "notes/literals.h"
#include "records/csv_output.h"
#include "records/shown_note.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

enum class Format { Dxl, Json, Csv };

Format formatOf(const CommandCall& call) {
  if (call.has(u"dxl") + call.has(u"json") + call.has(u"csv") > 1)
    throw WrongUse(CommandText::tr("--dxl, --json and --csv exclude each other"));
  if (call.has(u"items") && !call.has(u"csv")) throw WrongUse(CommandText::tr("--items goes with --csv"));
  return call.has(u"json") ? Format::Json : call.has(u"csv") ? Format::Csv : Format::Dxl;
}

// A whole database goes out with its design; chosen documents go alone.
void writeDxl(CommandCall& call, Output& out) {
  const QString& name = call.arguments.first();
  const std::shared_ptr<Database> store = openStore(call.doors, call.name, name);
  const ExportProgress progress = [&](int done, int all) {
    call.console.progress(name, done, all);
    return true;
  };
  QVector<NoteId> chosen;
  if (choosesDocuments(call))
    walkDocuments(call, openDatabase(call.doors, name), [&](const NotesDocument& document) {
      chosen.push_back(NoteId(document.noteId().toUInt(nullptr, 16)));
    });
  OutputDevice device(out);
  try {
    if (choosesDocuments(call))
      exportNotes(*store, chosen, device, progress);
    else
      exportDatabase(*store, device, progress);
  } catch (const RuntimeError&) {
    out.requireWhole();
    throw;
  }
}

void writeJson(CommandCall& call, Output& out) {
  walkDocuments(call, openDatabase(call.doors, call.arguments.first()),
                [&](const NotesDocument& document) { out.line(jsonOf(document)); });
}

// The names of all items of the documents, in the order in which they come up.
QStringList itemNames(CommandCall& call, const NotesDatabase& database) {
  QStringList names;
  QSet<ItemName> known;
  walkDocuments(call, database, [&](const NotesDocument& document) {
    const Value items = document.items();
    if (!items.isArray()) return;
    for (const Value& element : items.values()) {
      const QString name = NotesItem(element.object()).name();
      if (const ItemName key(name); !known.contains(key)) {
        known.insert(key);
        names += name;
      }
    }
  });
  return names;
}

QString cellText(const Value& value) {
  return value.kind() == Value::Kind::DateTime ? isoText(value.dateTime()) : value.text();
}

void addCell(CsvRow& row, const Value& values) {
  if (!values.isArray() || values.upperBound() < 0) return row.empty();
  if (values.upperBound() == 0 && values.at(0).kind() == Value::Kind::Number)
    return row.number(values.at(0).number());
  QStringList texts;
  for (const Value& value : values.values()) texts += cellText(value);
  row.text(texts.join(u"; "_s));
}

// People write a space after a comma.
QStringList namesOf(const QString& list) {
  QStringList names;
  for (const QString& name : list.split(u',')) names += name.trimmed();
  names.removeAll(QString());
  return names;
}

void writeCsv(CommandCall& call, Output& out) {
  const NotesDatabase database = openDatabase(call.doors, call.arguments.first());
  const QStringList names = call.has(u"items") ? namesOf(call.value(u"items")) : itemNames(call, database);
  CsvRow row;
  for (const QString& name : QStringList{u"NoteID"_s, u"UNID"_s} + names) row.text(name);
  out.write(row.finish());
  walkDocuments(call, database, [&](const NotesDocument& document) {
    row.text(eightDigits(document.noteId()));
    row.text(document.universalId());
    for (const QString& name : names) addCell(row, document.itemValue(name));
    out.write(row.finish());
  });
  if (row.madeSafe() > 0)
    call.console.say(
        CommandText::tr(
            "%1: %2 began with a character that spreadsheets take for a formula and got an apostrophe")
            .arg(call.name, counted(row.madeSafe(), CommandText::tr("cell"), CommandText::tr("cells"))));
}

void writeAs(Format format, CommandCall& call, Output& out) {
  if (format == Format::Dxl)
    writeDxl(call, out);
  else if (format == Format::Json)
    writeJson(call, out);
  else
    writeCsv(call, out);
}

}  // namespace

// The file takes its place when it is whole.
int exportDocuments(CommandCall& call) {
  const Format format = formatOf(call);
  choosesDocuments(call);
  if (!call.has(u"output")) {
    writeAs(format, call, call.console.out());
    return exitcode::Done;
  }
  const QString path = call.value(u"output");
  requireWritablePlace(path);
  if (QFile::exists(path)) call.confirm(CommandText::tr("Replace %1?").arg(path));
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) failToWrite(path, file.errorString());
  Output out(file, path);
  writeAs(format, call, out);
  out.flush();
  if (!commitWhole(file)) failToWrite(path, file.errorString());
  return exitcode::Done;
}

}  // namespace lens
