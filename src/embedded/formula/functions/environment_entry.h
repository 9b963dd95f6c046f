// How formulas name entries of notes.ini.
#pragma once

#include <QString>
#include <QStringView>

namespace lens::formula {

// The entry on disk: it carries a mark in front, so that formulas cannot touch any other.
inline QString environmentEntry(QStringView name) {
  return u'$' + name.toString();
}

}  // namespace lens::formula
