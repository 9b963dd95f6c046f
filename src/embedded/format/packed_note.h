// A note as a scan of the store shows it: the header, and the items packed as they lie in the file. What
// looks at a few items of many notes takes those and unpacks nothing.
#pragma once

#include "embedded/format/note.h"
#include "embedded/format/packed_items.h"

namespace lens {

struct PackedNote {
  NoteHeader header;
  PackedItems items;

  Note unpack() const { return {header, unpackItems(items.bytes())}; }
};

bool isProfile(const PackedNote& note);

}  // namespace lens
