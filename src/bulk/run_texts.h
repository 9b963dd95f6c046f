// Texts of the operations' boxes that look like slips of one another. Users search for them as they are.
#pragma once

#include <QString>

#include "notes/literals.h"

namespace lens::exact {

inline const QString kChooseView = u"Choose source view!!"_s;
inline const QString kChooseSource = u"Choose Source database!!"_s;
inline const QString kChooseTarget = u"Choose Destination database!!"_s;
inline const QString kChooseViewToEmpty = u"Choose View !!"_s;

}  // namespace lens::exact
