#include "platform/linux/FileLock.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>

namespace pelmora::platform {

namespace {

class FileLockTest : public testing::Test {
 protected:
  [[nodiscard]] FileDescriptor open() const {
    return FileDescriptor(::open(_path.c_str(), O_RDWR | O_CLOEXEC));
  }

 private:
  TemporaryFolder _folder;
  FilePath _path = _folder.write("lock");
};

}  // namespace

TEST_F(FileLockTest, isHadByOneAtATime) {
  const FileDescriptor other = open();
  const Patience none{.atMost = std::chrono::milliseconds(0)};
  {
    const FileDescriptor one = open();
    EXPECT_TRUE(lockFile(one.get(), none));
    EXPECT_FALSE(lockFile(other.get(), none));
    EXPECT_EQ(errno, EWOULDBLOCK);
  }
  EXPECT_TRUE(lockFile(other.get(), none));
}

TEST_F(FileLockTest, isWaitedForNoLongerThanAsked) {
  const FileDescriptor one = open();
  const FileDescriptor other = open();
  ASSERT_TRUE(lockFile(one.get(), {}));
  int asked = 0;
  const Patience some{.atMost = std::chrono::milliseconds(40), .isOver = [&asked] {
                        ++asked;
                        return false;
                      }};
  EXPECT_FALSE(lockFile(other.get(), some));
  EXPECT_EQ(asked, 2);
  EXPECT_FALSE(
      lockFile(other.get(), {.atMost = std::chrono::hours(1), .isOver = [] { return true; }}));
}

TEST_F(FileLockTest, isNotWaitedForWhereItCannotBe) {
  EXPECT_FALSE(lockFile(-1, {.atMost = std::chrono::hours(1)}));
  EXPECT_EQ(errno, EBADF);
}

}  // namespace pelmora::platform
