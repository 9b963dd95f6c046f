// "$Name" of profile documents: "$profile_", three digits, the profile's name of so many characters, "_", the
// user's name, which is empty where all users share the profile.
#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace lens {

QString profileName(const QString& profile, const QString& user);
// Whether a "$Name" is that of a profile at all. Without regard to case.
bool isProfileName(QStringView name);

// The two halves as they are written there; none where the name is put together otherwise. The length parts
// them, since both may hold a "_".
struct ProfileNameParts {
  QStringView profile, user;
};
std::optional<ProfileNameParts> profileNameParts(QStringView name);

}  // namespace lens
