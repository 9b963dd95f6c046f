#include "command/run_command.h"

#include <QFileInfo>

#include "command/command_table.h"
#include "command/command_text.h"
#include "notes/literals.h"
#include "notes/version.h"

namespace lens {
namespace {

QString literal(const char* text) {
  return QString::fromLatin1(text);
}

void addOptions(QCommandLineParser& parser, std::span<const OptionRow> options) {
  for (const OptionRow& option : options)
    parser.addOption(
        option.value ? QCommandLineOption(literal(option.name), literal(option.help), literal(option.value))
                     : QCommandLineOption(literal(option.name), literal(option.help)));
}

// The first word that is neither an option nor an option's value, and what stands before it.
struct Beginning {
  QString command;
  bool help = false, version = false, isSound = false;
  QString workspace;
};

// QCommandLineParser passes over the first argument, which is the program's name in a whole command line.
QStringList withProgramName(const QStringList& arguments) {
  return QStringList(u"TessalyAndDocContent"_s) + arguments;
}

Beginning beginningOf(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
  addOptions(parser, commonOptions());
  Beginning beginning;
  beginning.isSound = parser.parse(withProgramName(arguments));
  beginning.command = parser.positionalArguments().value(0);
  beginning.help = parser.isSet(u"help"_s);
  beginning.version = parser.isSet(u"version"_s);
  beginning.workspace = parser.value(u"workspace"_s);
  return beginning;
}

class Runner {
 public:
  Runner(Console& console, const DoorOpener& open) : console_(console), open_(open) {}

  int run(const QStringList& arguments) {
    try {
      const int code = dispatch(arguments);
      console_.out().flush();
      return code;
    } catch (const WrongUse& error) {
      console_.say(CommandText::tr("%1: %2 (%3 tells more)").arg(subject_, error.description(), u"--help"_s));
      return exitcode::WrongUse;
    } catch (const RuntimeError& error) {
      console_.out().finish();
      console_.say(subject_ + u": "_s + placed(error));
      return console_.isInterrupted() ? exitcode::Interrupted : exitcode::Failed;
    }
  }

 private:
  int dispatch(const QStringList& arguments) {
    const Beginning beginning = beginningOf(arguments);
    if (beginning.command.isEmpty()) return withoutCommand(arguments, beginning);
    const CommandRow* command = findCommand(beginning.command);
    if (!command) throw WrongUse(CommandText::tr("there is no command \"%1\"").arg(beginning.command));
    subject_ = beginning.command;
    QCommandLineParser parser;
    addOptions(parser, commonOptions());
    addOptions(parser, command->options);
    if (command->choosesDocuments) addOptions(parser, choosingOptions());
    const bool isSound = parser.parse(withProgramName(arguments));
    if (parser.isSet(u"help"_s)) return print(commandHelp(*command));
    if (!isSound) throw WrongUse(wordingOf(parser));
    return call(*command, parser);
  }

  int withoutCommand(const QStringList& arguments, const Beginning& beginning) {
    if (beginning.version) return print(u"TessalyAndDocContent %1\n"_s.arg(programVersion()));
    if (beginning.help) return print(programHelp());
    throw WrongUse(CommandText::tr("no command is given in \"%1\"").arg(arguments.join(u' ')));
  }

  int call(const CommandRow& command, const QCommandLineParser& parser) {
    QStringList given = parser.positionalArguments();
    given.removeFirst();
    if (given.size() < command.fewest || (command.most >= 0 && given.size() > command.most))
      throw WrongUse(command.most == 0
                         ? CommandText::tr("takes no arguments")
                         : CommandText::tr("wants the arguments \"%1\"").arg(literal(command.arguments)));
    if (!given.isEmpty()) place_ = given.first();
    Doors doors = command.needsWorkspace ? open_(parser.value(u"workspace"_s))
                                         : Doors{nullptr, nullptr, nullptr, Regional(QLocale())};
    if (doors.workspace) watchRealDatabases(*doors.workspace);
    CommandCall call{subject_, given, parser, console_, doors};
    return command.run(call);
  }

  // A real database is read when a command first names it, which may take long.
  void watchRealDatabases(Workspace& workspace) {
    workspace.watchRealDatabases({[this](const QString& file, qint64 done, qint64 all) {
                                    console_.progress(file, done, all);
                                    return true;
                                  },
                                  [this](const RealDatabase& opened) {
                                    const QString warning = opened.warning();
                                    if (!warning.isEmpty())
                                      console_.say(
                                          CommandText::tr("%1: %2: %3 (\"nsf info\" tells what and why)")
                                              .arg(subject_, opened.source, warning));
                                  }});
  }

  int print(const QString& text) {
    console_.out().write(text.toUtf8());
    return exitcode::Done;
  }

  // The parser's sentence as part of one of ours.
  static QString wordingOf(const QCommandLineParser& parser) {
    QString sentence = parser.errorText();
    while (sentence.endsWith(u'.')) sentence.chop(1);
    return sentence;
  }

  // The general texts of failures do not say where.
  QString placed(const RuntimeError& error) const {
    const bool isGeneral = error.description() == standardErrorText(error.number());
    return isGeneral && !place_.isEmpty() ? place_ + u": "_s + error.description() : error.description();
  }

  Console& console_;
  const DoorOpener& open_;
  QString subject_ = u"TessalyAndDocContent"_s;
  QString place_;
};

}  // namespace

// A word that is neither a command nor a file is a command mistyped: windows would be no answer to it.
bool isForCommandLine(const QStringList& arguments) {
  if (arguments.isEmpty()) return false;
  const Beginning beginning = beginningOf(arguments);
  if (!beginning.isSound) return false;
  if (beginning.command.isEmpty()) return beginning.help || beginning.version;
  return findCommand(beginning.command) || !QFileInfo::exists(beginning.command);
}

QString workspaceOfWindows(const QStringList& arguments) {
  return isForCommandLine(arguments) ? QString() : beginningOf(arguments).workspace;
}

QStringList filesOfWindows(const QStringList& arguments) {
  if (isForCommandLine(arguments)) return {};
  QCommandLineParser parser;
  addOptions(parser, commonOptions());
  parser.parse(withProgramName(arguments));
  QStringList files;
  for (const QString& word : parser.positionalArguments())
    if (QFileInfo::exists(word)) files += QFileInfo(word).absoluteFilePath();
  return files;
}

int runCommand(const QStringList& arguments, const Console::Ends& ends, const DoorOpener& open) {
  Console console(ends);
  return Runner(console, open).run(arguments);
}

}  // namespace lens
