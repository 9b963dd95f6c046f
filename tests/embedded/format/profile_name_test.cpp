#include "embedded/format/profile_name.h"

#include <gtest/gtest.h>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

TEST(ProfileNames, AreTakenApartAsTheyWerePutTogether) {
  for (const auto& [profile, user] : {std::pair{u"a"_s, QString()},
                                      {QString(), QString()},
                                      {u"a_b_"_s, u"_x"_s},
                                      {u"calendarprofile"_s, u"cn=karin meier/o=acme"_s},
                                      {u"%1"_s, u"%2%3"_s},
                                      {QString(999, u'p'), u"u"_s}}) {
    const QString name = profileName(profile, user);
    EXPECT_TRUE(isProfileName(name)) << name.toStdString();
    const auto parts = profileNameParts(name);
    ASSERT_TRUE(parts) << name.toStdString();
    EXPECT_EQ(parts->profile.toString(), profile);
    EXPECT_EQ(parts->user.toString(), user);
  }
  EXPECT_EQ(profileName(u"Settings"_s, u"Ada"_s), u"$profile_008settings_ada"_s);
  EXPECT_EQ(profileName(u"a"_s, {}), u"$profile_001a_"_s);
}

TEST(ProfileNames, ThatArePutTogetherOtherwiseHaveNoParts) {
  for (const QString& name :
       {u""_s, u"$profile_"_s, u"$profile_01"_s, u"$profile_999x_"_s, u"$profile_-01x_"_s, u"$profile_001x"_s,
        u"$profile_xyzabc_"_s, u"$other__001a_"_s})
    EXPECT_FALSE(profileNameParts(name)) << name.toStdString();
  EXPECT_TRUE(isProfileName(u"$PROFILE_xyz"));
  EXPECT_FALSE(isProfileName(u"profile_001a_"));
}

}  // namespace
}  // namespace lens
