#include "embedded/design/profiles.h"

namespace lens {
namespace {

constexpr qsizetype kMark = 9, kLengthDigits = 3;  // "$profile_", "015"

}  // namespace

bool isProfileName(const Item& item) {
  Note only;
  only.items.push_back(item);
  return isProfile(only);
}

QVector<Profile> profilesOf(const Database& database) {
  QVector<Profile> profiles;
  const QVector<NoteSummary> documents = database.list(noteclass::Document);
  for (const NoteSummary& document : documents) {
    try {
      Note named;
      Item name;
      if (!database.readItem(document.id, u"$Name", name)) continue;
      named.items.push_back(std::move(name));
      if (isProfile(named)) profiles.push_back({document.id, named.text(u"$Name")});
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;  // one damaged note does not hide the others
    }
  }
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
