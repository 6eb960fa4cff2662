#include "render/AnimationBegin.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace pelmora::render {
namespace {

struct AnimationBeginTest : testing::Test {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler{clock};
  int received = 0;
  std::shared_ptr<BeginNotice> notice =
      std::make_shared<BeginNotice>(scheduler, [this] { ++received; });
};

TEST_F(AnimationBeginTest, isUnknownUntilFixed) {
  AnimationBegin begin;
  EXPECT_FALSE(begin.isKnown());
  begin.fix(3);
  EXPECT_TRUE(begin.isKnown());
  EXPECT_EQ(begin.time(), 3);
}

TEST_F(AnimationBeginTest, keepsTheFirstFrame) {
  AnimationBegin begin;
  begin.fix(3);
  begin.fix(4);
  EXPECT_EQ(begin.time(), 3);
}

TEST_F(AnimationBeginTest, keepsOneOfTheFramesThatRace) {
  AnimationBegin begin;
  begin.setNotice(notice);
  std::vector<std::thread> windows;
  for (int i = 1; i <= 4; ++i) windows.emplace_back([&begin, i] { begin.fix(i); });
  for (std::thread& window : windows) window.join();
  EXPECT_GE(begin.time(), 1);
  EXPECT_LE(begin.time(), 4);
  scheduler.runPosted();
  EXPECT_EQ(received, 1);
}

TEST_F(AnimationBeginTest, tellsMainOnceForAllThatBeganMeanwhile) {
  AnimationBegin first;
  AnimationBegin second;
  first.setNotice(notice);
  second.setNotice(notice);
  first.fix(1);
  second.fix(1);
  EXPECT_EQ(received, 0);
  scheduler.runPosted();
  EXPECT_EQ(received, 1);
}

TEST_F(AnimationBeginTest, tellsMainAgainOfWhatBeganAfterwards) {
  notice->post();
  scheduler.runPosted();
  notice->post();
  scheduler.runPosted();
  EXPECT_EQ(received, 2);
}

TEST_F(AnimationBeginTest, tellsNobodyOnceClosed) {
  notice->post();
  notice->close();
  notice->post();
  scheduler.runPosted();
  EXPECT_EQ(received, 0);
}

}  // namespace
}  // namespace pelmora::render
