#include "platform/linux/CurrentMounts.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace pelmora::platform {

namespace {

constexpr const char* kDisk = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
constexpr const char* kStick = "2 1 8:2 / /stick rw - vfat /dev/sdb1 rw\n";

/// Something that polls POLLPRI when it is told to, until it is taken note of: a terminal that
/// tells whoever controls it what was done to it.
class Notice {
 public:
  Notice() {
    FileDescriptor control(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
    int isTold = 1;
    if (::grantpt(control.get()) != 0 || ::unlockpt(control.get()) != 0) return;
    _terminal = FileDescriptor(::open(::ptsname(control.get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (::ioctl(control.get(), TIOCPKT, &isTold) == 0) _control = std::move(control);
  }

  [[nodiscard]] FileDescriptor descriptor() const { return FileDescriptor(::dup(_control.get())); }
  [[nodiscard]] bool give() const { return ::tcflush(_terminal.get(), TCIFLUSH) == 0; }
  [[nodiscard]] bool take() const {
    char word = 0;
    return ::read(_control.get(), &word, 1) == 1;
  }

 private:
  FileDescriptor _control;
  FileDescriptor _terminal;
};

class CurrentMountsTest : public testing::Test {
 protected:
  [[nodiscard]] MountTable read() {
    ++reads;
    return MountTable::parse(mountInfo);
  }

  std::string mountInfo = kDisk;
  int reads = 0;
  Notice notice;
  CurrentMounts mounts{[this] { return read(); }, notice.descriptor()};
};

}  // namespace

TEST_F(CurrentMountsTest, areReadOnceUntilTheyChange) {
  const auto before = mounts.table();
  EXPECT_EQ(mounts.table(), before);
  EXPECT_EQ(reads, 1);

  mountInfo += kStick;
  ASSERT_TRUE(notice.give());
  const auto during = mounts.table();
  ASSERT_TRUE(notice.take());
  EXPECT_EQ(during->mounts().size(), 2U);
  EXPECT_EQ(before->mounts().size(), 1U);
  EXPECT_EQ(mounts.table(), during);
  EXPECT_EQ(reads, 2);
}

TEST_F(CurrentMountsTest, areReadAnewWhereTheyCouldNotBeRead) {
  mountInfo.clear();
  EXPECT_EQ(mounts.table()->mounts().size(), 0U);
  mountInfo = kDisk;
  EXPECT_EQ(mounts.table()->mounts().size(), 1U);
}

TEST_F(CurrentMountsTest, areReadEachTimeWhereNobodyTellsOfChanges) {
  CurrentMounts untold([this] { return read(); });
  EXPECT_EQ(untold.table()->mounts().size(), 1U);
  mountInfo += kStick;
  EXPECT_EQ(untold.table()->mounts().size(), 2U);
}

TEST_F(CurrentMountsTest, areThoseOfThisProcess) {
  const auto own = CurrentMounts().table();
  EXPECT_EQ(own->mounts().empty(), MountTable::ofThisProcess().mounts().empty());
}

}  // namespace pelmora::platform
