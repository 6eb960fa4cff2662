#include "host/EndingAlarm.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace pelmora::host {

TEST(EndingAlarm, isOffWhenItIsGone) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        { const EndingAlarm alarm(std::chrono::milliseconds(200)); }
        // Were it still on, this would tell of less time than is set here.
        const unsigned left = ::alarm(0);
        _exit(left == 0 ? 7 : 1);
      },
      testing::ExitedWithCode(7), "");
}

TEST(EndingAlarm, endsAProcessThatHangs) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EndingAlarm alarm(std::chrono::milliseconds(1));
        pause();
      },
      testing::ExitedWithCode(0), "without waiting any longer");
}

}  // namespace pelmora::host
