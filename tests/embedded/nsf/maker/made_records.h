// Records of notes, the blocks of what is not in their summary, and objects with their frames.
#pragma once

#include "embedded/nsf/maker/made_names.h"

namespace lens::made {

// What of a note lies outside its record, with its header; empty where there is nothing.
QByteArray bodyBlock(const MadeNote& note, const MadeNames& names);

// bodyPosition counts units of 256 bytes. Rubbish is what may follow the values.
QByteArray noteRecord(const MadeNote& note, const MadeNames& names, quint32 bodyPosition, quint32 bodySize,
                      const QByteArray& rubbish);

QByteArray framedObject(const MadeObject& object);

}  // namespace lens::made
