// The notes that a database has once at most: copying refuses a second one, an import and a replication put
// the new one in the place of the old.
#pragma once

#include "embedded/format/note.h"

namespace lens {

// Class bits.
inline constexpr quint16 kSingleNotes =
    noteclass::About | noteclass::Icon | noteclass::Design | noteclass::Acl | noteclass::HelpIndex;

inline bool isSingleInstance(quint16 noteClass) {
  return noteclass::base(noteClass) & kSingleNotes;
}

}  // namespace lens
