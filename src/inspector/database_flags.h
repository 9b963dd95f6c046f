// What the letters of "$Flags" in a database's icon note mean.
#pragma once

#include <QString>
#include <QStringView>
#include <QVector>

namespace lens {

// All letters with their meanings. Each line ends in a lone carriage return; so does each blank line.
QString databaseLegend();

// A part of the legend, from 0.
struct Stretch {
  qsizetype start = 0;
  qsizetype length = 0;
  bool operator==(const Stretch&) const = default;
};

// The parts of the legend that the flags name, in the order of the flags. Each ends with its line.
//
// A flag is found where it first stands before " = ", be that the middle of a line: a lone "s" gives the
// tail of the line of "ls". A minus pair is one only at the start of the flags; further on the minus takes
// more and more letters along and is found only where the flags end with the pair. A text without a line
// end behind a hit gives a negative length.
QVector<Stretch> flagStretches(QStringView flags, QStringView legend);

}  // namespace lens
