#include "platform/linux/index/IndexTurn.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(IndexTurn, isHadByOneAtATimeAndGivenBack) {
  const TemporaryFolder folder;
  bool isOver = false;
  IndexTurn one(folder.path() / "turn", [] { return false; });
  IndexTurn other(folder.path() / "turn", [&isOver] { return isOver; });
  {
    const auto held = one.take();
    EXPECT_TRUE(held.isOurs());
    isOver = true;  // does not wait for it
    EXPECT_FALSE(other.take().isOurs());
    isOver = false;
  }
  EXPECT_TRUE(other.take().isOurs());
}

TEST(IndexTurn, isNobodysWhereThereIsNoFileForIt) {
  IndexTurn turn(FilePath(), [] { return false; });
  EXPECT_FALSE(turn.take().isOurs());
}

}  // namespace pelmora::platform
