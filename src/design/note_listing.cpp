#include "design/note_listing.h"

#include "shell/client_facts.h"

namespace lens {

QString captionPlace(Routines& routines, const Object& database) {
  return serverCommonName(routines, database) + u"!!" + database.get(u"FILEPATH"_s).text();
}

QString firstValueText(const Object& document, const QString& item, const Regional& regional) {
  return textOf(document.call(u"GETITEMVALUE"_s, item).at(0), regional);
}

void switchChosenClassOn(const QVector<DesignClass>& classes, Form1& form, Globals& state,
                         Routines& routines) {
  QString label;
  for (const DesignClass& row : classes) {
    if (form.lstDesigns->text() != row.property) continue;
    state.gNoteColl.set(row.property, true);
    label = row.label;
  }
  form.setWindowTitle(label + u" documents in: " + captionPlace(routines, state.gDb));
}

}  // namespace lens
