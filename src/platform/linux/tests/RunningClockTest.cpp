#include "platform/linux/RunningClock.h"

#include "platform/SteppedTime.h"

#include <gtest/gtest.h>

#include <csignal>

namespace pelmora::platform {

class RunningClockTest : public testing::Test {
 protected:
  void pass(double seconds) { machine.advanceTo(machine.mediaTime() + seconds); }

  SteppedClock machine;
  RunningClock clock{machine};
  const double start = clock.mediaTime();
};

TEST_F(RunningClockTest, goesWithTheMachine) {
  pass(7.5);
  EXPECT_DOUBLE_EQ(clock.mediaTime(), start + 7.5);
  EXPECT_EQ(clock.now(), machine.now());
}

TEST_F(RunningClockTest, standsStillWhileTheProcessIsStopped) {
  pass(1);
  EXPECT_DOUBLE_EQ(clock.mediaTime(), start + 1);
  pass(3600);
  std::raise(SIGCONT);
  EXPECT_DOUBLE_EQ(clock.mediaTime(), start + 1);
  pass(0.25);
  EXPECT_DOUBLE_EQ(clock.mediaTime(), start + 1.25);
}

}  // namespace pelmora::platform
