#include "host/MemoryShortage.h"

#include <gtest/gtest.h>

#include <new>

namespace pelmora::host {

TEST(MemoryShortage, endsTheProcessWithALine) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        endWhenMemoryRunsOut();
        std::get_new_handler()();  // as the allocator does
      },
      testing::ExitedWithCode(1), "there is no memory left");
}

}  // namespace pelmora::host
