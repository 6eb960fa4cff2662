#include "sandbox/TimeLimit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace pelmora::sandbox {

namespace {

rlim_t cpuLimit() {
  rlimit limit{};
  getrlimit(RLIMIT_CPU, &limit);
  return limit.rlim_cur;
}

/// What is left of the alarm, which this switches off.
unsigned takeAlarm() { return alarm(0); }

}  // namespace

TEST(TimeLimit, endsALittleAfterTheDeadlineWhileItLives) {
  const rlim_t before = cpuLimit();
  {
    const TimeLimit limit(100);
    EXPECT_GT(cpuLimit(), 100U);
    EXPECT_LT(cpuLimit(), 1000U);
    const unsigned left = takeAlarm();
    EXPECT_GT(left, 100U);
    EXPECT_LT(left, 110U);
  }
  EXPECT_EQ(cpuLimit(), before);
}

TEST(TimeLimit, isOffAfterwards) {
  { const TimeLimit limit(100); }
  EXPECT_EQ(takeAlarm(), 0U);
}

}  // namespace pelmora::sandbox
