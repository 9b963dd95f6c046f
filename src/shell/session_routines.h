// The three small routines that acquire a session.
#pragma once

#include <QString>

#include "host/host.h"
#include "notes/bridge.h"
#include "notes/literals.h"
#include "shell/globals.h"

namespace lens {

class SessionRoutines {
 public:
  SessionRoutines(Globals& state, Gateway& notes, Host& host) : state_(state), notes_(notes), host_(host) {}

  // Makes a back-end session when there is none and asks it for the user's name: that fails when no
  // client or no identity is at hand. The only place that names a missing client to the user.
  void GetSessionProbe();
  // Both raise what the model raises.
  QString GetDataDirectory() { return systemEntry(u"Directory"_s); }
  QString GetProgramDirectory() { return systemEntry(u"NotesProgram"_s); }
  // Makes a session of the running client when there is none.
  void ensureSession();

 private:
  QString systemEntry(const QString& name);

  Globals& state_;
  Gateway& notes_;
  Host& host_;
};

}  // namespace lens
