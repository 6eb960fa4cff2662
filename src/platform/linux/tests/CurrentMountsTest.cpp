#include "platform/linux/CurrentMounts.h"

#include "platform/fake/TemporaryFolder.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

constexpr int kMayNotMount = 2;

/// Whether this process sees mounts of its own from now on, which nobody else does.
bool leaveOtherMounts() {
  if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);  // no mount in a changed root
  return true;
}

/// In a process of its own: whether a mount and its end are seen, each by one new table.
int followAMountAt(const FilePath& folder) {
  if (!leaveOtherMounts()) return kMayNotMount;
  CurrentMounts mounts;
  const auto before = mounts.table();
  if (::mount("stick", folder.c_str(), "tmpfs", 0, nullptr) != 0) return kMayNotMount;
  const auto during = mounts.table();
  const bool isSameWhileNothingChanges = mounts.table() == during;
  const bool isUnmounted = ::umount(folder.c_str()) == 0;
  const auto after = mounts.table();
  const std::size_t count = before->mounts().size();
  const bool isFollowed =
      during->mounts().size() == count + 1 && after->mounts().size() == count && isUnmounted;
  return isFollowed && isSameWhileNothingChanges ? 0 : 1;
}

}  // namespace

TEST(CurrentMounts, areReadOnceUntilTheyChange) {
  CurrentMounts mounts;
  const auto first = mounts.table();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->mounts().size(), MountTable::ofThisProcess().mounts().size());
  EXPECT_EQ(mounts.table(), first);
}

TEST(CurrentMounts, areFollowedAsTheyChange) {
  const TemporaryFolder temporary;
  const pid_t child = fork();
  if (child == 0) _exit(followAMountAt(temporary.path()));
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "(" << kMayNotMount << ": the system lets it mount nothing)";
}

TEST(CurrentMounts, areAskedOfAnotherReaderEachTime) {
  std::string mountInfo = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
  CurrentMounts mounts([&mountInfo] { return MountTable::parse(mountInfo); });
  const auto before = mounts.table();
  mountInfo += "2 1 8:2 / /stick rw - vfat /dev/sdb1 rw\n";
  EXPECT_EQ(before->mounts().size(), 1U);
  EXPECT_EQ(mounts.table()->mounts().size(), 2U);
}

}  // namespace pelmora::platform
