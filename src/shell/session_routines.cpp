#include "shell/session_routines.h"

namespace lens {

void SessionRoutines::GetSessionProbe() {
  try {
    if (state_.gSession.isNothing()) {
      state_.gSession = NotesSession::ofBackEnd(notes_);
      state_.gSession.initialize();
      state_.gSession.userName();
    }
  } catch (const RuntimeError& error) {
    host_.messageBox(u"Start NotesClient !!!  "_s + error.description(), box::Critical);
  }
}

void SessionRoutines::ensureSession() {
  if (state_.gSession.isNothing()) state_.gSession = NotesSession::ofClient(notes_);
}

QString SessionRoutines::systemEntry(const QString& name) {
  ensureSession();
  return state_.gSession.environmentString(name, true);
}

}  // namespace lens
