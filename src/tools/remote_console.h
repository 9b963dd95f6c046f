// The console of a server: sends what is typed and shows the reply in place of the field's content, and
// recalls what was sent before.
#pragma once

#include "shell/desk.h"

namespace lens {

class RemoteConsole {
 public:
  explicit RemoteConsole(Desk& desk);

  void cmdRemCon_Click();
  void txtRemoteCommand_KeyDown(int key);

 private:
  void remember(const QString& command);
  void sendThroughLibrary(const RemoteCommand& remoteCommand, const QString& server, const QString& command);
  void sendThroughClass(QString server, QString command);
  void recall(int step);

  Desk& desk_;
};

}  // namespace lens
