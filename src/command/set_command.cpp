// set: writes one item of one document.
#include <QDateTime>
#include <optional>

#include "command/command_functions.h"
#include "command/command_table.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "notes/item_types.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "records/shown_note.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

enum class Kind { Text, Number, Date };

[[noreturn]] void refuse(const QString& item, const QString& reason) {
  throw RuntimeError(err::TypeMismatch, CommandText::tr("the item \"%1\" %2").arg(item, reason));
}

// The kind of the item that is there; what is no list of values is not written over.
Kind kindOf(const NotesItem& item) {
  switch (item.typeCode()) {
    case itemcode::Text:
    case itemcode::Names:
    case itemcode::Readers:
    case itemcode::Authors:
      return Kind::Text;
    case itemcode::Number:
      return Kind::Number;
    case itemcode::Date:
      return Kind::Date;
    default:
      refuse(item.name(), CommandText::tr("is of type %1, which this command does not write")
                              .arg(itemTypeName(item.typeCode())));
  }
}

std::optional<Kind> askedKind(const CommandCall& call) {
  if (!call.has(u"type")) return std::nullopt;
  const QString type = call.value(u"type");
  if (type == u"text") return Kind::Text;
  if (type == u"number") return Kind::Number;
  if (type == u"date") return Kind::Date;
  throw WrongUse(CommandText::tr("--type is text, number or date, not \"%1\"").arg(type));
}

// With a "T" and a distance from GMT it is a moment anywhere; otherwise it is meant as the region writes it.
Value dateOf(const QString& text, const Regional& regional) {
  const QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
  if (text.contains(u'T') && moment.isValid()) {
    const QDateTime local = moment.toLocalTime();
    return DateTime{local.date(), local.time()};
  }
  return regional.dateTime(text);
}

Value valueOf(const QString& text, Kind kind, const QString& item, const Regional& regional) {
  try {
    if (kind == Kind::Number) return wholeNumberText(text);
    if (kind == Kind::Date) return dateOf(text, regional);
    return text;
  } catch (const RuntimeError&) {
    refuse(item, CommandText::tr("takes no value \"%1\": it is no %2")
                     .arg(text, kind == Kind::Number ? CommandText::tr("number") : CommandText::tr("date")));
  }
}

Value listOf(const QStringList& texts, Kind kind, const QString& item, const Regional& regional) {
  QVector<Value> values;
  for (const QString& text : texts) values.push_back(valueOf(text, kind, item, regional));
  return values.size() == 1 ? values.first() : Value::array(std::move(values));
}

// A new value takes these marks away, and with them who may read or change the document.
void giveBackMarks(const NotesItem& item, int former) {
  if (former == itemcode::Readers) item.setReaders(true);
  if (former == itemcode::Authors) item.setAuthors(true);
  if (former == itemcode::Names) item.setNames(true);
}

void writeChange(CommandCall& call, const NotesDocument& document, const ItemRecord& item) {
  if (call.json()) {
    JsonLine json;
    json.text("noteId", eightDigits(document.noteId()))
        .text("unid", document.universalId())
        .beginArray("items");
    item.addTo(json, true);
    return call.console.out().line(json.finish());
  }
  QByteArray line;
  appendPrintable(
      line, u"%1  %2: %3"_s.arg(eightDigits(document.noteId()), item.name, item.text(call.doors.regional)));
  call.console.out().line(line);
}

}  // namespace

int setItem(CommandCall& call) {
  const QString &name = call.arguments[0], &noteId = call.arguments[1], &itemName = call.arguments[2];
  const std::optional<Kind> asked = askedKind(call);
  const NotesDocument document = findDocument(openDatabase(call.doors, name), name, noteId);
  try {
    const NotesItem present = document.firstItem(itemName);
    const Kind own = present ? kindOf(present) : Kind::Text;
    const int former = present ? present.typeCode() : itemcode::Text;
    const Value values = listOf(call.arguments.sliced(3), asked.value_or(own), itemName, call.doors.regional);
    call.confirm(
        CommandText::tr("Set \"%1\" of note %2 in %3?").arg(itemName, eightDigits(document.noteId()), name));
    document.replaceItemValue(itemName, values);
    const NotesItem changed = document.firstItem(itemName);
    if (changed.typeCode() == itemcode::Text) giveBackMarks(changed, former);
    document.save(false, false);
    writeChange(call, document, recordOf(changed));
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(),
                       CommandText::tr("%1, note %2: %3").arg(name, noteId, error.description()));
  }
  return exitcode::Done;
}

}  // namespace lens
