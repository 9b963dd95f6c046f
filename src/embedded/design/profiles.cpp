#include "embedded/design/profiles.h"

#include "embedded/store/packed_note.h"

namespace lens {
namespace {

constexpr qsizetype kMark = 9, kLengthDigits = 3;  // "$profile_", "015"

}  // namespace

QVector<Profile> profilesOf(const Database& database) {
  QVector<Profile> profiles;
  database.scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (isProfile(note)) profiles.push_back({note.header.id, note.unpack().text(u"$Name")});
    return true;
  });
  return profiles;
}

// The length parts the name from the user, since both may hold a "_".
bool isProfileCalled(QStringView name, QStringView profile) {
  if (name.size() < kMark + kLengthDigits) return false;
  bool isNumber = false;
  const int length = name.sliced(kMark, kLengthDigits).toInt(&isNumber);
  const QStringView rest = name.sliced(kMark + kLengthDigits);
  if (!isNumber || length < 0 || length >= rest.size() || rest[length] != u'_') return false;
  return rest.first(length).compare(profile, Qt::CaseInsensitive) == 0;
}

}  // namespace lens
