#include "tools/remote_console.h"

#include "controls/keys.h"
#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/error_modes.h"
#include "shell/text_routines.h"
#include "tools/cls_remote_console.h"

namespace lens {
namespace {

constexpr qsizetype kReplySize = 32767;

QByteArray nulEnded(const QString& text) {
  return toCodePage(text) + '\0';
}

}  // namespace

RemoteConsole::RemoteConsole(Desk& desk) : desk_(desk) {
  desk_.form.cmdRemCon->click = [this] { cmdRemCon_Click(); };
  desk_.form.txtRemoteCommand->keyDown = [this](int key, int) { txtRemoteCommand_KeyDown(key); };
}

void RemoteConsole::cmdRemCon_Click() {
  trapped(desk_.host, {u"cmdRemCon_Click"_s, u"Formular Form1"_s}, [&] {
    const QString server = desk_.form.lstServerList->text(), command = desk_.form.txtRemoteCommand->text();
    remember(trimBlanks(command));
    // An empty box means no reply, or a failure.
    desk_.form.txtFieldContent->setText(QString());
    if (const RemoteCommand remoteCommand = desk_.host.remoteCommand())
      sendThroughLibrary(remoteCommand, server, command);
    else
      sendThroughClass(server, command);
  });
}

// Each command once. Its entries are numbered with 16 bits.
void RemoteConsole::remember(const QString& command) {
  QStringList& history = desk_.state.gRemoteHistory;
  if (history.contains(command)) return;
  Int16 counter(history.size());
  counter += 1;
  history += command;
}

// A failing library leaves NotesTerm out.
void RemoteConsole::sendThroughLibrary(const RemoteCommand& remoteCommand, const QString& server,
                                       const QString& command) {
  QByteArray response(kReplySize, ' ');
  desk_.api.NotesInitExtended(0, QByteArray());
  const qint16 result = remoteCommand(nulEnded(server), nulEnded(command), response);
  desk_.api.NotesTerm();
  if (result > 0) desk_.form.txtFieldContent->setText(fromCodePage(upToNul(response)));
}

void RemoteConsole::sendThroughClass(QString server, QString command) {
  clsRemoteConsole console(desk_.api, desk_.host);
  const QString reply = console.Execute(server, command);
  if (!console.IsError) desk_.form.txtFieldContent->setText(reply);
}

void RemoteConsole::txtRemoteCommand_KeyDown(int key) {
  if (key == key::Enter) desk_.form.cmdRemCon->raiseClick();
  if (key == key::Down) recall(1);
  if (key == key::Up) recall(-1);
}

// From the text in the box, which need not be the last one that was sent. Nothing happens at either end.
void RemoteConsole::recall(int step) {
  const QStringList& history = desk_.state.gRemoteHistory;
  const qsizetype at = history.indexOf(desk_.form.txtRemoteCommand->text());
  const qsizetype wanted = at + step;
  if (at < 0 || wanted < 0 || wanted >= history.size()) return;
  desk_.form.txtRemoteCommand->setText(history[wanted]);
}

}  // namespace lens
