#include "bulk/frm_replic.h"

#include <gtest/gtest.h>

#include "notes/literals.h"

namespace lens {
namespace {

TEST(FrmReplicRecord, StartsWithTheListOfDatabasesChosenForTheDump) {
  FrmReplic window;
  EXPECT_EQ(window.windowTitle(), u"Copy / Move / Remove / Replace fields content in Domino Documents "_s);
  EXPECT_TRUE(window.Opt[0]->isChecked());
  EXPECT_FALSE(window.Opt[1]->isChecked());
  EXPECT_FALSE(window.Opt[2]->isChecked());
}

}  // namespace
}  // namespace lens
