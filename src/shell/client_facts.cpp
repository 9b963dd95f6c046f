#include "shell/client_facts.h"

#include "notes/literals.h"

namespace lens {

QString serverCommonName(Routines& routines, const Object& database) {
  const QString server = database.get(u"server"_s).text();
  return routines.LeftFrom(routines.RightFrom(server, u"CN="_s), u"/"_s);
}

bool hasNoteCollections(const Object& session) {
  const QString release = session.get(u"NOTESVERSION"_s).text();
  return release.left(9) >= u"Release 5"_s;
}

}  // namespace lens
