#include "platform/linux/MountTable.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

constexpr std::string_view kMountInfo =
    "22 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw\n"
    "23 22 0:5 / /proc rw - proc proc rw\n"
    "40 22 8:3 /@home /home rw,relatime shared:2 master:1 - btrfs /dev/sda3 rw,subvol=/@home\n"
    "41 22 8:17 / /media/my\\040stick\\134 rw - vfat /dev/sdb1 rw\n"
    "42 22 0:50 / /net rw - autofs systemd-1 rw\n"
    "43 42 0:51 / /net/nas rw - nfs4 nas:/photos rw\n"
    "44 22 8:18 / /media/my\\040stick\\134 rw - ext4 /dev/sdb2 rw\n";

std::string sourceOf(const char* path) {
  static const MountTable table = MountTable::parse(kMountInfo);
  const Mount* const mount = table.mountOf(FilePath(path));
  return mount ? mount->source : "none";
}

}  // namespace

TEST(MountTable, findsTheMountOfAPath) {
  EXPECT_EQ(sourceOf("/"), "/dev/sda2");
  EXPECT_EQ(sourceOf("/etc"), "/dev/sda2");
  EXPECT_EQ(sourceOf("/home"), "/dev/sda3");
  EXPECT_EQ(sourceOf("/home/me/Pictures"), "/dev/sda3");
  EXPECT_EQ(sourceOf("/homes"), "/dev/sda2");
  EXPECT_EQ(sourceOf("/net/nas/a"), "nas:/photos");
  EXPECT_EQ(sourceOf("/net/other"), "systemd-1");
  EXPECT_EQ(sourceOf("relative"), "none");
}

TEST(MountTable, findsTheLastOfSeveralMountsOnAFolder) {
  EXPECT_EQ(sourceOf("/media/my stick\\/a"), "/dev/sdb2");
}

TEST(MountTable, passesOverDamagedLines) {
  const MountTable table = MountTable::parse(
      "\n - \n1 2 3\n1 2 3 / /a rw\n1 2 3 / /a rw - ext4\n1 2 3 / relative rw - ext4 x rw\n"
      "1 2 3 / /a\\04 rw opt:1 - ext4 /dev/x rw\n1 2 3 net:[4026531840] /run/netns rw - nsfs nsfs "
      "rw");
  ASSERT_EQ(table.mounts().size(), 1U);
  EXPECT_EQ(table.mounts().front().point, FilePath("/a\\04"));
  EXPECT_EQ(MountTable::parse("").mountOf(FilePath("/")), nullptr);
}

TEST(MountTable, knowsTheMountsOfThisProcess) {
  // What it is read from is mounted, whatever else is.
  EXPECT_NE(MountTable::ofThisProcess().mountOf(FilePath("/proc")), nullptr);
}

TEST(Mount, translatesPathsBothWays) {
  const Mount home{FilePath("/home"), FilePath("/@home"), "btrfs", "/dev/sda3"};
  EXPECT_EQ(home.pathInFilesystem(FilePath("/home/me")), FilePath("/@home/me"));
  EXPECT_EQ(home.pathHere(FilePath("/@home/me")), FilePath("/home/me"));
  EXPECT_EQ(home.pathHere(FilePath("/@home")), FilePath("/home"));
  EXPECT_EQ(home.pathHere(FilePath("/@homes/me")), FilePath());

  const Mount whole{FilePath("/media/x"), FilePath("/"), "ext4", "/dev/sdb1"};
  EXPECT_EQ(whole.pathInFilesystem(FilePath("/media/x")), FilePath("/"));
  EXPECT_EQ(whole.pathInFilesystem(FilePath("/media/x/a")), FilePath("/a"));
  EXPECT_EQ(whole.pathHere(FilePath("/a/b")), FilePath("/media/x/a/b"));
  EXPECT_EQ(whole.pathHere(FilePath("/")), FilePath("/media/x"));

  const Mount root{FilePath("/"), FilePath("/"), "ext4", "/dev/sda1"};
  EXPECT_EQ(root.pathInFilesystem(FilePath("/a")), FilePath("/a"));
  EXPECT_EQ(root.pathHere(FilePath("/")), FilePath("/"));
}

TEST(Mount, knowsWhatMayWaitForOthers) {
  EXPECT_TRUE((Mount{{}, {}, "ext4", ""}.isLocalStorage()));
  EXPECT_TRUE((Mount{{}, {}, "vfat", ""}.isLocalStorage()));
  for (const char* type : {"nfs", "nfs4", "cifs", "autofs", "fuse.sshfs", "9p", "proc", ""}) {
    EXPECT_FALSE((Mount{{}, {}, type, ""}.isLocalStorage())) << type;
  }
}

}  // namespace pelmora::platform
