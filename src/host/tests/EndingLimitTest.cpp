#include "host/EndingLimit.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>

namespace pelmora::host {

TEST(EndingLimit, lastsNoLongerThanTheEnding) {
  const EndingLimit limit(std::chrono::hours(1));
  SUCCEED();  // and waits for nothing
}

TEST(EndingLimit, endsAProcessThatHangs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EndingLimit limit(std::chrono::milliseconds(1));
        pause();
      },
      testing::ExitedWithCode(0), "a disk that does not answer");
}

}  // namespace pelmora::host
