#include "shell/session_routines.h"

namespace lens {

void SessionRoutines::GetSessionProbe() {
  try {
    if (state_.gSession.isNothing()) {
      state_.gSession = notes_.create(u"Lotus.NotesSession"_s);
      state_.gSession.call(u"Initialize"_s);
      state_.gSession.get(u"USERNAME"_s);
    }
  } catch (const RuntimeError& error) {
    host_.messageBox(u"Start NotesClient !!!  "_s + error.description(), box::Critical);
  }
}

void SessionRoutines::ensureSession() {
  if (state_.gSession.isNothing()) state_.gSession = notes_.create(u"Notes.NotesSession"_s);
}

QString SessionRoutines::systemEntry(const QString& name) {
  ensureSession();
  return state_.gSession.call(u"GETENVIRONMENTSTRING"_s, name, true).text();
}

}  // namespace lens
