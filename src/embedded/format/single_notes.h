// The notes that a database has once at most.
#pragma once

#include "embedded/format/note.h"

namespace lens {

inline bool isSingleInstance(quint16 noteClass) {
  constexpr quint16 kSingle =
      noteclass::Design | noteclass::Acl | noteclass::About | noteclass::Icon | noteclass::HelpIndex;
  return noteclass::base(noteClass) & kSingle;
}

}  // namespace lens
