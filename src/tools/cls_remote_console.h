// A server's console over the C API: sends a command and reads the reply block. The main window uses it where
// no console library lies beside the program.
#pragma once

#include <QString>

#include "notes/capi.h"

namespace lens {

class Host;

// The text of a reply block: a signed 16-bit length, then that many bytes, of which the walk begins one too
// early, at the length's high byte, and leaves out the last; a NUL ends it. What is neither a line end nor
// printable ASCII up to "}" becomes a blank. The block must hold a NUL or as many bytes as its length tells.
QString decodedReply(const char* block);

class clsRemoteConsole {
 public:
  clsRemoteConsole(CApi& api, Host& host) : api_(api), host_(host) {}

  bool IsError = false;
  QString server, InputCommand;  // for who uses the class; a run takes what it is given

  // Sends the command and gives the reply, "" when there is none. A NUL is appended to both texts, for the
  // library's sake. Raises what the library raises; NotesTerm is not called then.
  QString Execute(QString& serverName, QString& command);

  // What went wrong in the last run: "Error: [status] text".
  const QString& errorText() const { return errorText_; }

 private:
  QString GetPlatform();
  bool send(const QString& serverName, const QString& command);
  void keepError();
  QString takeReply();

  CApi& api_;
  Host& host_;
  qint16 status_ = 0;
  MemHandle reply_ = 0;
  QString errorText_;
};

}  // namespace lens
