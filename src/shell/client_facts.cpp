#include "shell/client_facts.h"

namespace lens {

QString serverCommonName(Routines& routines, const Object& database) {
  const QString server = database.get(QStringLiteral("server")).text();
  return routines.LeftFrom(routines.RightFrom(server, QStringLiteral("CN=")), QStringLiteral("/"));
}

bool hasNoteCollections(const Object& session) {
  const QString release = session.get(QStringLiteral("NOTESVERSION")).text();
  return release.left(9) >= QStringLiteral("Release 5");
}

}  // namespace lens
