// One call of a command: what it was given and what it works with.
#pragma once

#include <QCommandLineParser>
#include <QStringList>

#include "command/command_console.h"
#include "command/doors.h"

namespace lens {

// How a command ends.
namespace exitcode {
inline constexpr int Done = 0;
inline constexpr int Found = 1;     // differences, damage, a mistake in a formula: what the command looks for
inline constexpr int WrongUse = 2;  // the command line itself
inline constexpr int Failed = 3;    // said on standard error
inline constexpr int Interrupted = 130;
}  // namespace exitcode

struct CommandCall {
  QString name;
  QStringList arguments;  // as many as the table of commands allows
  const QCommandLineParser& options;
  Console& console;
  Doors& doors;

  // Also of options that the command does not have: they are not given then.
  bool has(const char16_t* option) const {
    return options.optionNames().contains(QString::fromUtf16(option));
  }
  QString value(const char16_t* option) const {
    return has(option) ? options.value(QString::fromUtf16(option)) : QString();
  }
  bool json() const { return has(u"json"); }

  // Before anything is changed: nothing with --yes, else the user is asked. Raises when the answer is not
  // yes, and where nobody can be asked.
  void confirm(const QString& question) const;
};

}  // namespace lens
