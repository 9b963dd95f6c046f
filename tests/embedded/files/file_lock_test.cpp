// Locks beside a file, and what their owners leave when they are killed.
#include "embedded/files/file_lock.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class FileLockTest : public ::testing::Test {
 protected:
  QTemporaryDir directory_;
  QString path_ = directory_.filePath(u"a.nsf"_s);
};

TEST_F(FileLockTest, IsHeldByOne) {
  const FileLock first(path_, 0);
  EXPECT_EQ(first.state(), FileLock::State::Held);
  EXPECT_EQ(FileLock(path_, 0).state(), FileLock::State::Taken);
}

// Its owner was killed between making it and writing who it is. Who comes at once would otherwise be told of
// another program that is not there.
TEST_F(FileLockTest, WithoutAnOwnerIsTakenOverAlsoByWhoDoesNotWait) {
  QFile nameless(path_ + u".lock"_s);
  ASSERT_TRUE(nameless.open(QIODevice::WriteOnly));
  nameless.close();
  EXPECT_EQ(FileLock(path_, 0).state(), FileLock::State::Held);
}

}  // namespace
}  // namespace lens
