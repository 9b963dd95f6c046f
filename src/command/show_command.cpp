// show and items: what is in a document, and which items there are.
#include <QMap>

#include "command/command_functions.h"
#include "command/document_walk.h"
#include "command/text_output.h"
#include "notes/item_types.h"
#include "notes/literals.h"
#include "records/shown_note.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

constexpr qsizetype kItemNameWidth = 24, kItemTypeWidth = 12;
constexpr qsizetype kValueIndent = 4;

NotesDocument documentOf(CommandCall& call) {
  const QString& name = call.arguments[0];
  return findDocument(openDatabase(call.doors, name), name, call.arguments[1]);
}

QByteArray itemLine(const ItemRecord& item) {
  QByteArray line;
  appendColumn(line, item.name, kItemNameWidth);
  appendColumn(line, itemTypeName(item.type), kItemTypeWidth);
  appendPrintable(line, item.flags.join(u", "_s));
  while (line.endsWith(' ')) line.chop(1);
  return line;
}

template <class Use>
void forEachItem(const NotesDocument& document, const Use& use) {
  const Value items = document.items();
  if (!items.isArray()) return;
  for (const Value& item : items.values()) use(recordOf(NotesItem(item.object())));
}

// Item names of a whole database: how often, and as what.
struct NameUse {
  QString name;  // as it is written first
  qint64 count = 0;
  QMap<QString, qint64> types;
};

void countItems(const NotesDocument& document, QMap<QString, NameUse>& names) {
  const Value items = document.items();
  if (!items.isArray()) return;
  for (const Value& element : items.values()) {
    const NotesItem item = element.object();
    const QString name = item.name();
    NameUse& use = names[name.toUpper()];
    if (use.count++ == 0) use.name = name;
    ++use.types[itemTypeName(item.typeCode())];
  }
}

void writeUse(CommandCall& call, const NameUse& use) {
  if (call.json()) {
    JsonLine json;
    json.text("name", use.name).number("count", use.count).beginArray("types");
    for (const auto& [type, count] : use.types.asKeyValueRange())
      json.beginObject().text("type", type).number("count", count).end();
    return call.console.out().line(json.finish());
  }
  QByteArray line;
  appendColumn(line, use.name, kItemNameWidth);
  appendColumn(line, QString::number(use.count), kItemTypeWidth);
  appendPrintable(line, QStringList(use.types.keys()).join(u", "_s));
  call.console.out().line(line);
}

int listItemsOfDatabase(CommandCall& call) {
  QMap<QString, NameUse> names;
  walkDocuments(call, openDatabase(call.doors, call.arguments.first()),
                [&](const NotesDocument& document) { countItems(document, names); });
  for (const NameUse& use : std::as_const(names)) writeUse(call, use);
  return exitcode::Done;
}

}  // namespace

int showDocument(CommandCall& call) {
  const NotesDocument document = documentOf(call);
  Output& out = call.console.out();
  if (call.json()) {
    out.line(jsonOf(document));
    return exitcode::Done;
  }
  out.line("Note ID  " + eightDigits(document.noteId()).toLatin1());
  out.line("UNID     " + document.universalId().toLatin1());
  forEachItem(document, [&](const ItemRecord& item) {
    out.line(itemLine(item));
    QByteArray text(kValueIndent, ' ');
    appendLines(text, item.text(call.doors.regional), kValueIndent);
    if (text.size() > kValueIndent) out.line(text);
  });
  return exitcode::Done;
}

int listItems(CommandCall& call) {
  if (call.arguments.size() == 1) return listItemsOfDatabase(call);
  forEachItem(documentOf(call), [&](const ItemRecord& item) {
    if (!call.json()) return call.console.out().line(itemLine(item));
    JsonLine json;
    json.text("name", item.name).text("type", itemTypeName(item.type)).texts("flags", item.flags);
    call.console.out().line(json.finish());
  });
  return exitcode::Done;
}

}  // namespace lens
