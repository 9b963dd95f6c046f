#include "tools/cls_remote_console.h"

#include <QtEndian>

#include "host/host.h"
#include "notes/code_page.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Another platform would be entered here and in the table of GetPlatform.
const QString kPlatform = u"win"_s;

constexpr quint16 kLongestError = 1023;

char shown(char byte) {
  const quint8 code = quint8(byte);
  const bool lineEnd = code == 10 || code == 13;
  return code > 125 || (code < 32 && !lineEnd) ? ' ' : byte;
}

}  // namespace

QString decodedReply(const char* block) {
  const qint16 length = qFromLittleEndian<qint16>(block);
  QByteArray text;
  for (int i = 1; i <= length && block[i] != 0; ++i) text.append(shown(block[i]));
  return QString::fromLatin1(text);
}

QString clsRemoteConsole::Execute(QString& serverName, QString& command) {
  const QString platform = GetPlatform();
  if (serverName.isEmpty() || command.isEmpty()) {
    IsError = true;
    return {};
  }
  serverName += QChar(u'\0');
  command += QChar(u'\0');
  if (platform != u"w32") return {};
  QString text;
  api_.NotesInitExtended(0, QByteArray());
  if (send(serverName, command)) {
    text = takeReply();
    IsError = false;
  } else {
    keepError();
  }
  api_.NotesTerm();
  return text;
}

bool clsRemoteConsole::send(const QString& serverName, const QString& command) {
  status_ = qint16(api_.NSFRemoteConsole(toCodePage(serverName), toCodePage(command), reply_));
  return status_ == 0;
}

void clsRemoteConsole::keepError() {
  IsError = true;
  QByteArray buffer;
  const quint16 length = api_.OSLoadString(0, Status(status_), buffer, kLongestError);
  errorText_ = u"Error: [%1] "_s.arg(status_) + fromCodePage(buffer.left(length));
}

// From here all failures are ignored: what was read so far is the reply.
QString clsRemoteConsole::takeReply() {
  QString text;
  try {
    if (const char* block = api_.OSLockObject(reply_)) text = decodedReply(block);
    api_.OSUnlockObject(reply_);
    api_.OSMemFree(reply_);
  } catch (const RuntimeError&) {
  }
  return text;
}

QString clsRemoteConsole::GetPlatform() {
  const QString name = kPlatform.toLower();
  if (name.contains(u"aix")) return u"aix"_s;
  if (name.contains(u"solaris")) return u"solaris"_s;
  if (name.contains(u"linux")) return u"linux"_s;
  if (name.contains(u"win")) return u"w32"_s;
  if (name.contains(u"mac")) return u"mac"_s;
  host_.messageBox(u"Unsupported Platform : >"_s + name + u"<");
  return {};
}

}  // namespace lens
