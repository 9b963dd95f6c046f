#include "embedded/format/profile_name.h"

#include "embedded/format/case_key.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr QStringView kProfileMark = u"$profile_";
constexpr qsizetype kLengthDigits = 3;

}  // namespace

QString profileName(const QString& profile, const QString& user) {
  return kProfileMark.toString() + u"%1%2_%3"_s.arg(profile.size(), int(kLengthDigits), 10, QLatin1Char('0'))
                                       .arg(caseKey(profile), caseKey(user));
}

bool isProfileName(QStringView name) {
  return name.startsWith(kProfileMark, Qt::CaseInsensitive);
}

std::optional<ProfileNameParts> profileNameParts(QStringView name) {
  if (!isProfileName(name) || name.size() < kProfileMark.size() + kLengthDigits) return std::nullopt;
  bool isNumber = false;
  const int length = name.sliced(kProfileMark.size(), kLengthDigits).toInt(&isNumber);
  const QStringView rest = name.sliced(kProfileMark.size() + kLengthDigits);
  if (!isNumber || length < 0 || length >= rest.size() || rest[length] != u'_') return std::nullopt;
  return ProfileNameParts{rest.first(length), rest.sliced(length + 1)};
}

}  // namespace lens
