// What all listings of notes in idList share.
#pragma once

#include <QString>
#include <QVector>

#include "design/design_classes.h"
#include "host/host.h"
#include "notes/bridge.h"
#include "notes/literals.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/routines.h"

namespace lens {

inline const QString kNameItem = u"$Name"_s;
inline const QString kTitleItem = u"$Title"_s;

// "Server!!path", as the window's caption names the database.
QString captionPlace(Routines& routines, const NotesDatabase& database);

// The first value of an item as text. Raises 13 for an item without values.
QString firstValueText(const NotesDocument& document, const QString& item, const Regional& regional);

// Switches on in gNoteColl the class of the chosen entry of lstDesigns, and names it in the caption. An
// entry that the classes do not know switches nothing on.
void switchChosenClassOn(const QVector<DesignClass>& classes, Form1& form, Globals& state,
                         Routines& routines);

}  // namespace lens
