// Names without regard to case: the engine's one rule by which two names are the same.
//
// Each character is folded to one character (simple case folding), so a name keeps its length and "ß" stays
// apart from "SS". Search words and what @UpperCase makes of a text follow the rules of writing instead, and
// say so there.
#pragma once

#include <QString>
#include <QStringView>

namespace lens {

// Two names have the same key exactly when sameCaseKey says that they match: what sets and tables are looked
// up by.
QString caseKey(QStringView name);
bool sameCaseKey(QStringView a, QStringView b);

}  // namespace lens
