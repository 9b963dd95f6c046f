#include "design/note_listing.h"

#include "shell/client_facts.h"

namespace lens {

QString captionPlace(Routines& routines, const NotesDatabase& database) {
  return serverCommonName(routines, database) + u"!!" + database.filePath();
}

QString firstValueText(const NotesDocument& document, const QString& item, const Regional& regional) {
  return textOf(document.itemValue(item).at(0), regional);
}

void switchChosenClassOn(const QVector<DesignClass>& classes, Form1& form, Globals& state,
                         Routines& routines) {
  QString label;
  for (const DesignClass& row : classes) {
    if (form.lstDesigns->text() != row.property) continue;
    state.gNoteColl.select(row.property, true);
    label = row.label;
  }
  form.setWindowTitle(label + u" documents in: " + captionPlace(routines, state.gDb));
}

}  // namespace lens
