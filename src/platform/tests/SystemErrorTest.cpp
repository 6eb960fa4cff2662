#include "platform/SystemError.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace pelmora::platform {

TEST(SystemError, tellsThePathAndTheReason) {
  EXPECT_EQ(systemError(FilePath("/a b"), ENOENT).message, "/a b: No such file or directory");
}

TEST(SystemError, hasWordsForAnyNumber) { EXPECT_FALSE(systemErrorText(123456).empty()); }

}  // namespace pelmora::platform
