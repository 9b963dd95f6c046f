// Names that match without regard to case as keys of sets and tables.
#pragma once

#include <QString>
#include <QStringView>

namespace lens {

// Two names have the same key exactly when sameItemName says that they match; file names of attachments are
// compared alike. Other foldings of Qt make two letters of one (of "ß"), so what matches would have two keys.
QString caseKey(QStringView name);

}  // namespace lens
