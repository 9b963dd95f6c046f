// Damage at random, and what of a file it cannot have touched.
#pragma once

#include <QSet>
#include <random>

#include "embedded/nsf/maker/nsf_maker.h"

namespace lens::made {

struct Damaged {
  QByteArray bytes;
  QVector<MadePlace> touched;  // where bytes may differ from the whole file
  QString what;                // for people
};

// One or a few changes: bits, runs of one byte, numbers at their ends, ranges that change places, are copied
// over others, removed or cut off.
Damaged damage(const MadeFile& file, std::mt19937& random);

// The notes of the file whose bytes, or whatever leads to them, may have been changed.
QSet<quint32> affectedNotes(const MadeFile& file, const Damaged& damaged);

}  // namespace lens::made
