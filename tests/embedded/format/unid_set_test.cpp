#include "embedded/format/unid_set.h"

#include <gtest/gtest.h>

namespace lens {
namespace {

TEST(UnidSet, HoldsWhatWasPutIn) {
  UnidSet set;
  EXPECT_TRUE(set.isEmpty());
  Unid a, nearly;
  ASSERT_TRUE(Unid::parse(u"0123456789ABCDEF0123456789ABCDEF", a));
  ASSERT_TRUE(Unid::parse(u"0123456789ABCDEF0123456789ABCDEE", nearly));
  EXPECT_FALSE(set.contains(a));
  set.insert(a);
  set.insert(a);
  EXPECT_FALSE(set.isEmpty());
  EXPECT_TRUE(set.contains(a));
  EXPECT_FALSE(set.contains(nearly));
  EXPECT_FALSE(set.contains(Unid()));
  set.insert(Unid());
  EXPECT_TRUE(set.contains(Unid()));
}

}  // namespace
}  // namespace lens
