#include "embedded/design/profile_notes.h"

#include "embedded/format/case_key.h"
#include "embedded/format/packed_note.h"
#include "embedded/format/profile_name.h"

namespace lens {

QVector<Profile> profilesOf(const Database& database) {
  QVector<Profile> profiles;
  database.notes().scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (isProfile(note)) profiles.push_back({note.header.id, note.unpack().text(u"$Name")});
    return true;
  });
  return profiles;
}

bool isProfileCalled(QStringView name, QStringView profile) {
  const auto parts = profileNameParts(name);
  return parts && sameCaseKey(parts->profile, profile);
}

}  // namespace lens
