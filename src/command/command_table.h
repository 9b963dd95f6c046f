// The table of commands: names, arguments, options and help of each, and what it runs. The parser, the help,
// the manual page and the shell's completion agree with it (the last two by a test).
#pragma once

#include <QString>
#include <span>

#include "command/command_call.h"

namespace lens {

// The command line itself is wrong: the user is sent to the help.
class WrongUse : public RuntimeError {
 public:
  explicit WrongUse(QString what) : RuntimeError(err::InvalidCall, std::move(what)) {}
};

struct OptionRow {
  const char* name;   // without its dashes
  const char* value;  // what stands behind it; null for a switch
  const char* help;
};

struct CommandRow {
  const char* name;
  const char* arguments;               // as the help shows them
  int fewest, most;                    // arguments; most is -1 for any number
  const char* help;                    // one sentence
  std::span<const OptionRow> options;  // of its own
  bool choosesDocuments;               // whether it also takes choosingOptions()
  int (*run)(CommandCall& call);
  bool needsWorkspace = true;  // without one the doors are closed
};

std::span<const CommandRow> commandTable();
// Null when there is no such command.
const CommandRow* findCommand(const QString& name);
// Of every command: --help, --version, --workspace, --json and --yes.
std::span<const OptionRow> commonOptions();
// --view, --formula and --search.
std::span<const OptionRow> choosingOptions();

// What --help prints: of the program, or of one command.
QString programHelp();
QString commandHelp(const CommandRow& command);

}  // namespace lens
