#include "shell/client_facts.h"

#include "notes/literals.h"

namespace lens {

QString serverCommonName(Routines& routines, const NotesDatabase& database) {
  const QString server = database.server();
  return routines.LeftFrom(routines.RightFrom(server, u"CN="_s), u"/"_s);
}

bool hasNoteCollections(const NotesSession& session) {
  const QString release = session.notesVersion();
  return release.left(9) >= u"Release 5"_s;
}

}  // namespace lens
