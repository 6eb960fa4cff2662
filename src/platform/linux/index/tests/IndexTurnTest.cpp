#include "platform/linux/index/IndexTurn.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

class IndexTurnTest : public testing::Test {
 protected:
  /// Waits until it has asked once whether it is over.
  IndexTurn turn() {
    return {folder.path() / "turn", clock, {.isOver = [this] {
              ++waits;
              return true;
            }}};
  }

  TemporaryFolder folder;
  SteppedClock clock;
  int waits = 0;
};

}  // namespace

TEST_F(IndexTurnTest, isHadByOneAtATimeAndGivenBack) {
  IndexTurn one = turn();
  IndexTurn other = turn();
  {
    const auto held = one.take();
    EXPECT_TRUE(held.isOurs());
    EXPECT_FALSE(other.take().isOurs());
  }
  EXPECT_TRUE(other.take().isOurs());
}

TEST_F(IndexTurnTest, isNotWaitedForTimeAndAgainWhileOneDoesNotGiveItBack) {
  IndexTurn one = turn();
  IndexTurn other = turn();
  {
    const auto held = one.take();
    for (int i = 0; i < 10; ++i) EXPECT_FALSE(other.take().isOurs());
    EXPECT_EQ(waits, 1);
    clock.advanceTo(clock.mediaTime() + IndexTurn::kUnwaited);
    EXPECT_FALSE(other.take().isOurs());
    EXPECT_EQ(waits, 2);
  }
  EXPECT_TRUE(other.take().isOurs());
  const auto held = one.take();
  EXPECT_FALSE(other.take().isOurs());
  EXPECT_EQ(waits, 3) << "it was given back meanwhile";
}

TEST_F(IndexTurnTest, isNobodysWhereThereIsNoFileForIt) {
  IndexTurn none(FilePath(), clock, {});
  EXPECT_FALSE(none.take().isOurs());
}

}  // namespace pelmora::platform
