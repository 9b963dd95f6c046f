#include "embedded/store/profile_name.h"

namespace lens {
namespace {

constexpr QStringView kMark = u"$profile_";
constexpr qsizetype kLengthDigits = 3;

}  // namespace

QString profileName(const QString& profile, const QString& user) {
  return kMark.toString() + QStringLiteral("%1%2_%3")
                                .arg(profile.size(), int(kLengthDigits), 10, QLatin1Char('0'))
                                .arg(profile.toLower(), user.toLower());
}

bool isProfileName(QStringView name) {
  return name.startsWith(kMark, Qt::CaseInsensitive);
}

std::optional<ProfileNameParts> profileNameParts(QStringView name) {
  if (!isProfileName(name) || name.size() < kMark.size() + kLengthDigits) return std::nullopt;
  bool isNumber = false;
  const int length = name.sliced(kMark.size(), kLengthDigits).toInt(&isNumber);
  const QStringView rest = name.sliced(kMark.size() + kLengthDigits);
  if (!isNumber || length < 0 || length >= rest.size() || rest[length] != u'_') return std::nullopt;
  return ProfileNameParts{rest.first(length), rest.sliced(length + 1)};
}

}  // namespace lens
