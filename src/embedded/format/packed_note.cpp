#include "embedded/format/packed_note.h"

#include "embedded/format/profile_name.h"

namespace lens {

bool isProfile(const PackedNote& note) {
  const qsizetype place = note.items.find(u"$Name");
  return place >= 0 && isProfileName(firstText(note.items[place].toItem()));
}

}  // namespace lens
