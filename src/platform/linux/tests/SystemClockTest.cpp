#include "platform/linux/SystemClock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace pelmora::platform {

TEST(SystemClock, tellsTheWallTime) {
  const auto posixNow = [] {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(since).count();
  };
  constexpr double kRounding = 1e-6;
  const double before = posixNow();
  const double told = SystemClock().now().posixSeconds();
  EXPECT_GE(told, before - kRounding);
  EXPECT_LE(told, posixNow() + kRounding);
}

TEST(SystemClock, neverMovesMediaTimeBackward) {
  const SystemClock clock;
  double last = clock.mediaTime();
  for (int i = 0; i < 1000; ++i) {
    const double next = clock.mediaTime();
    ASSERT_GE(next, last);
    last = next;
  }
}

}  // namespace pelmora::platform
