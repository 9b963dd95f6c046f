#include "embedded/console/console.h"

#include "embedded/console/command_line.h"
#include "embedded/console/console_call.h"
#include "embedded/format/lmbcs.h"
#include "notes/literals.h"

namespace lens {
namespace {

Lines helpCommand(const ConsoleCall&);
Lines loadCommand(const ConsoleCall& call);
Lines tellCommand(const ConsoleCall& call);
Lines broadcastCommand(const ConsoleCall& call);
Lines quitCommand(const ConsoleCall& call);

const ConsoleCommand kCommands[] = {
    {"help", "help", "lists the commands", helpCommand},
    {"show", "show server|directory|tasks|...", "shows what the server has and does", showCommand},
    {"compact", "compact [database ...]", "gives the room of deleted data back", compactCommand},
    {"updall", "updall [database ...] [-x]", "updates indexes; -x makes the full-text index", updateCommand},
    {"replicate", "replicate server [database]", "exchanges changes with another server", replicateCommand},
    {"dbcopy", "dbcopy from to", "copies a database under a new name", copyCommand},
    {"load", "load task [arguments]", "runs compact, updall or replicate", loadCommand},
    {"tell", "tell task command", "passes a command to a running task", tellCommand},
    {"broadcast", "broadcast \"message\"", "sends a message to the users of the server", broadcastCommand},
    {"quit", "quit", "ends the server", quitCommand},
    {"exit", "exit", "the same", quitCommand},
};

const ConsoleCommand kTasks[] = {
    {"compact", "", "", compactCommand},
    {"updall", "", "", updateCommand},
    {"replicate", "", "", replicateCommand},
};

Lines helpCommand(const ConsoleCall&) {
  Lines lines{u"Commands of this server:"_s};
  lines += helpOn(kCommands);
  lines.append(u"Names with blanks stand between quotation marks."_s);
  return lines;
}

Lines noSuchTask(const QString& word) {
  return {u"Unable to find a task of this name: %1"_s.arg(repeated(word))};
}

Lines loadCommand(const ConsoleCall& call) {
  if (call.words.isEmpty()) return {u"Load needs the name of a task"_s};
  const ConsoleCommand* task = findCommand(kTasks, call.words.first());
  return task ? task->run(call.behindFirstWord()) : noSuchTask(call.words.first());
}

// A task has ended before its reply is there, so there is never one to talk to.
Lines tellCommand(const ConsoleCall& call) {
  if (call.words.isEmpty()) return {u"Tell needs the name of a task"_s};
  const ConsoleCommand* task = findCommand(kTasks, call.words.first());
  if (!task) return noSuchTask(call.words.first());
  return {u"Task %1 is not running"_s.arg(QLatin1String(task->name))};
}

Lines broadcastCommand(const ConsoleCall&) {
  return {u"Broadcast was not sent: no other users are connected to this server"_s};
}

Lines quitCommand(const ConsoleCall&) {
  return {u"Quit is not possible here: the server is there as long as its workspace is in use"_s};
}

Lines run(const ConsoleCall& call) {
  const QString word = call.words.first() == u"?" ? u"help"_s : call.words.first();
  const ConsoleCommand* command = findCommand(kCommands, word);
  if (!command)
    return {
        u"Unknown command: %1"_s.arg(repeated(word)),
        u"Type HELP for the list of commands."_s,
    };
  try {
    return command->run(call.behindFirstWord());
  } catch (const RuntimeError& error) {
    return {u"Error in %1: %2"_s.arg(QLatin1String(command->name), error.description())};
  }
}

// Titles and names may hold anything; a line of the reply is one line of text.
QString oneLine(QString line) {
  for (QChar& c : line)
    if (c.unicode() < 0x20 || c.unicode() == 0x7F) c = u' ';
  return line;
}

}  // namespace

QString runConsoleCommand(Workspace& workspace, const QString& server, const QString& command) {
  if (command.size() > kLongestCommand)
    return u"Command is too long: %1 characters are the most"_s.arg(kLongestCommand);
  const QStringList words = commandWords(command);
  if (words.isEmpty()) return {};
  Lines lines = run({workspace, server, words});
  for (QString& line : lines) line = oneLine(line);
  return lines.join(u"\r\n"_s);
}

QByteArray consoleReply(const QString& text) {
  constexpr qsizetype kRoomForTheEnd = 64;
  const QString parting = u"\r\n"_s;
  QStringList lines = text.split(parting);
  // A reply says something in any case. No character takes more than three bytes.
  constexpr qsizetype kLongestLine = (kLongestReply - kRoomForTheEnd) / 3 - 8;
  if (lines.first().size() > kLongestLine) lines.first() = lines.first().left(kLongestLine) + u"..."_s;
  QByteArray reply(" ");
  for (qsizetype i = 0; i < lines.size(); ++i) {
    const QByteArray line = toLmbcs(i == 0 ? lines[i] : parting + lines[i]);
    if (reply.size() + line.size() > kLongestReply - kRoomForTheEnd) {
      if (i > 0) reply += toLmbcs(parting);
      reply += toLmbcs(u"More lines than a reply can hold: %1"_s.arg(lines.size() - i));
      break;
    }
    reply += line;
  }
  return reply + '\0';
}

}  // namespace lens
