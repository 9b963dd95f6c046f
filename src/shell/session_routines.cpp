#include "shell/session_routines.h"

namespace lens {

void SessionRoutines::GetSessionProbe() {
  try {
    if (state_.gSession.isNothing()) {
      state_.gSession = notes_.create(QStringLiteral("Lotus.NotesSession"));
      state_.gSession.call(QStringLiteral("Initialize"));
      state_.gSession.get(QStringLiteral("USERNAME"));
    }
  } catch (const RuntimeError& error) {
    host_.messageBox(QStringLiteral("Start NotesClient !!!  ") + error.description(), box::Critical);
  }
}

void SessionRoutines::ensureSession() {
  if (state_.gSession.isNothing()) state_.gSession = notes_.create(QStringLiteral("Notes.NotesSession"));
}

QString SessionRoutines::systemEntry(const QString& name) {
  ensureSession();
  return state_.gSession.call(QStringLiteral("GETENVIRONMENTSTRING"), name, true).text();
}

}  // namespace lens
