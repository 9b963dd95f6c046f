#include "command/command_table.h"

#include "command/command_functions.h"
#include "command/command_text.h"
#include "notes/literals.h"

namespace lens {
namespace {

const QString kProgram = u"TessalyAndDocContent"_s;
constexpr int kAnyNumber = -1;
constexpr int kHelpWidth = 26;

constexpr OptionRow kCommonOptions[] = {
    {"help", nullptr, QT_TRANSLATE_NOOP("lens::CommandText", "Shows this help, or that of a command")},
    {"version", nullptr, QT_TRANSLATE_NOOP("lens::CommandText", "Shows the version of the program")},
    {"workspace", "DIR",
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "The workspace to work on, instead of TESSALY_WORKSPACE or the user's own")},
    {"json", nullptr,
     QT_TRANSLATE_NOOP("lens::CommandText", "Writes one JSON object a line (docs/command.schema.json)")},
    {"yes", nullptr,
     QT_TRANSLATE_NOOP("lens::CommandText", "Changes databases and replaces files without asking")},
};

constexpr OptionRow kServerOptions[] = {
    {"server", "NAME", QT_TRANSLATE_NOOP("lens::CommandText", "Lists this server only")},
};
constexpr OptionRow kChoosingOptions[] = {
    {"view", "NAME",
     QT_TRANSLATE_NOOP("lens::CommandText", "The documents of this view or folder, in its order")},
    {"formula", "FORMULA", QT_TRANSLATE_NOOP("lens::CommandText", "The documents that this formula selects")},
    {"search", "QUERY",
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "The documents that answer this full-text query, the best first")},
};
constexpr OptionRow kImportOptions[] = {
    {"into", "DB", QT_TRANSLATE_NOOP("lens::CommandText", "The database that takes the notes")},
    {"create", nullptr, QT_TRANSLATE_NOOP("lens::CommandText", "Makes the database where there is none")},
};
constexpr OptionRow kExportOptions[] = {
    {"dxl", nullptr,
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "DXL, with the design where no documents are chosen (the default)")},
    {"csv", nullptr,
     QT_TRANSLATE_NOOP("lens::CommandText", "CSV, a row for each document and a column for each item")},
    {"items", "NAME,...",
     QT_TRANSLATE_NOOP("lens::CommandText", "The columns of CSV: the items of these names, instead of all")},
    {"output", "FILE",
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "Writes to this file, whole or not at all, instead of standard output")},
};
constexpr OptionRow kSetOptions[] = {
    {"type", "TYPE",
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "text, number or date; otherwise the item's own, text for a new item")},
};
constexpr OptionRow kNsfOptions[] = {
    {"salvage", nullptr,
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "Looks for notes without the tables: deleted and outdated ones may be among them")},
};
constexpr OptionRow kAttachmentOptions[] = {
    {"extract", "DIR", QT_TRANSLATE_NOOP("lens::CommandText", "Writes the files into this directory")},
};

constexpr CommandRow kCommands[] = {
    {"databases", "", 0, 0,
     QT_TRANSLATE_NOOP("lens::CommandText", "Lists the databases of this machine and of the servers"),
     kServerOptions, false, listDatabases},
    {"documents",
     "DB",
     1,
     1,
     QT_TRANSLATE_NOOP("lens::CommandText", "Lists documents: note ID, form, subject"),
     {},
     true,
     listDocuments},
    {"show",
     "DB NOTE",
     2,
     2,
     QT_TRANSLATE_NOOP("lens::CommandText", "Shows the items of a document with their values"),
     {},
     false,
     showDocument},
    {"items",
     "DB [NOTE]",
     1,
     2,
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "Lists the items of a document, or the item names of a database and how often"),
     {},
     false,
     listItems},
    {"import", "FILE... --into DB", 1, kAnyNumber,
     QT_TRANSLATE_NOOP("lens::CommandText", "Imports DXL files, and folders of them, into a database"),
     kImportOptions, false, importFiles},
    {"export", "DB", 1, 1, QT_TRANSLATE_NOOP("lens::CommandText", "Writes documents as DXL, JSON or CSV"),
     kExportOptions, true, exportDocuments},
    {"set", "DB NOTE ITEM VALUE...", 4, kAnyNumber,
     QT_TRANSLATE_NOOP("lens::CommandText", "Sets an item of a document; several values make a list"),
     kSetOptions, false, setItem},
    {"evaluate",
     "DB NOTE FORMULA",
     3,
     3,
     QT_TRANSLATE_NOOP("lens::CommandText", "Evaluates a formula on a document; nothing is saved"),
     {},
     false,
     evaluateFormula},
    {"check",
     "FORMULA",
     1,
     1,
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "Tells whether a formula is correct, and where its first mistake is"),
     {},
     false,
     checkFormula},
    {"compare",
     "DB1 DB2",
     2,
     2,
     QT_TRANSLATE_NOOP("lens::CommandText", "Lists notes and items that two databases differ in, both ways"),
     {},
     false,
     compareTwoDatabases},
    {"attachments", "DB", 1, 1,
     QT_TRANSLATE_NOOP("lens::CommandText", "Lists the attachments of the documents, or extracts them"),
     kAttachmentOptions, false, listAttachments},
    {"formulas",
     "DB",
     1,
     1,
     QT_TRANSLATE_NOOP("lens::CommandText",
                       "Lists every formula, of the design and in documents, with its source"),
     {},
     false,
     listFormulas},
    {"integrity",
     "DB",
     1,
     1,
     QT_TRANSLATE_NOOP("lens::CommandText", "Checks the file, every note and every attachment"),
     {},
     false,
     checkDatabase},
    {"nsf", "info|dump FILE", 2, 2,
     QT_TRANSLATE_NOOP("lens::CommandText", "Tells what a real database holds, or lists its notes and items"),
     kNsfOptions, false, readRealDatabase, false},
};

QString helpLine(const QString& left, const char* right) {
  return u"  "_s + left.leftJustified(kHelpWidth) + u' ' + CommandText::tr(right) + u'\n';
}

QString optionLines(std::span<const OptionRow> options) {
  QString lines;
  for (const OptionRow& option : options) {
    QString left = u"--"_s + QString::fromLatin1(option.name);
    if (option.value) left += u' ' + QString::fromLatin1(option.value);
    lines += helpLine(left, option.help);
  }
  return lines;
}

}  // namespace

std::span<const CommandRow> commandTable() {
  return kCommands;
}

const CommandRow* findCommand(const QString& name) {
  for (const CommandRow& row : kCommands)
    if (name == QLatin1String(row.name)) return &row;
  return nullptr;
}

std::span<const OptionRow> commonOptions() {
  return kCommonOptions;
}

std::span<const OptionRow> choosingOptions() {
  return kChoosingOptions;
}

QString programHelp() {
  QString help = CommandText::tr("Usage: %1").arg(kProgram + u" [OPTION...] [COMMAND [ARGUMENT...]]\n\n"_s) +
                 CommandText::tr("Without a command the program opens its windows.") + u"\n\n"_s +
                 CommandText::tr("Commands:") + u'\n';
  for (const CommandRow& row : kCommands)
    help += helpLine(QString::fromLatin1(row.name) + u' ' + QString::fromLatin1(row.arguments), row.help);
  help += u'\n' + CommandText::tr("Options:") + u'\n' + optionLines(kCommonOptions) + u'\n';
  help += CommandText::tr(
      "DB is a path below the directory of databases, or \"SERVER!!PATH\". NOTE is a note ID or universal ID "
      "in\n"
      "hexadecimal digits. What begins with a dash and is no option stands behind \"--\".\n"
      "Exit code: 0 done, 1 a difference, fault or mistake was found, 2 wrong use, 3 failed, 130 "
      "interrupted.\n");
  return help;
}

QString commandHelp(const CommandRow& command) {
  const QStringList words = {kProgram, QString::fromLatin1(command.name), u"[OPTION...]"_s,
                             QString::fromLatin1(command.arguments)};
  QString help = CommandText::tr("Usage: %1").arg(words.join(u' ')).trimmed() + u"\n\n"_s +
                 CommandText::tr(command.help) + u".\n\n"_s + CommandText::tr("Options:") + u'\n';
  if (command.choosesDocuments) help += optionLines(kChoosingOptions);
  return help + optionLines(command.options) + optionLines(kCommonOptions);
}

}  // namespace lens
