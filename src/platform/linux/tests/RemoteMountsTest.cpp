#include "platform/linux/RemoteMounts.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pelmora::platform {

namespace {

constexpr const char* kLocal =
    "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n"
    "23 22 0:5 / /proc rw - proc proc rw\n"
    "24 22 0:6 / /home/me/USB rw - vfat /dev/sdb1 rw\n";
constexpr const char* kShare = "25 22 0:7 / /mnt/nas rw - nfs4 server:/export rw\n";
constexpr const char* kProgram = "26 22 0:8 / /home/me/phone rw - fuse.jmtpfs jmtpfs rw\n";

RemoteMounts of(const std::string& mountInfo) {
  return RemoteMounts(
      std::make_shared<CurrentMounts>([mountInfo] { return MountTable::parse(mountInfo); }));
}

}  // namespace

TEST(RemoteMounts, areNotThoseOfThisMachine) {
  RemoteMounts mounts = of(kLocal);
  EXPECT_FALSE(mounts.hasAny());
  EXPECT_EQ(mounts.pointOf(FilePath("/home/me/USB/a.jpg")), std::nullopt);
}

TEST(RemoteMounts, areThoseOfOtherMachinesAndPrograms) {
  RemoteMounts mounts = of(std::string(kLocal) + kShare + kProgram);
  EXPECT_TRUE(mounts.hasAny());
  EXPECT_EQ(mounts.pointOf(FilePath("/mnt/nas")), FilePath("/mnt/nas"));
  EXPECT_EQ(mounts.pointOf(FilePath("/mnt/nas/2024/a.jpg")), FilePath("/mnt/nas"));
  EXPECT_EQ(mounts.pointOf(FilePath("/home/me/phone/DCIM")), FilePath("/home/me/phone"));
  EXPECT_EQ(mounts.pointOf(FilePath("/mnt/nas2/a.jpg")), std::nullopt);
  EXPECT_EQ(mounts.pointOf(FilePath("/home/me/Pictures")), std::nullopt);
}

TEST(RemoteMounts, areFoundBehindLinksWithoutALookAtThem) {
  const TemporaryFolder temporary;
  const FilePath home = temporary.mkdir("home");
  const auto link = [&home](const std::string& target, const char* name) {
    std::filesystem::create_symlink(target, (home / name).bytes());
    return home / name;
  };
  // Nothing is there: whoever looked would find nothing.
  RemoteMounts mounts = of(std::string(kLocal) + "25 22 0:7 / " + temporary.path().bytes() +
                           "/nas rw - nfs4 server:/export rw\n");
  const FilePath nas = temporary.path() / "nas";
  const FilePath direct = link(nas.bytes() + "/2024", "direct");
  EXPECT_EQ(mounts.pointBehind(direct), nas);
  EXPECT_EQ(mounts.pointBehind(direct / "deeper"), nas);
  EXPECT_EQ(mounts.pointBehind(link("../nas/a.jpg", "relative")), nas);
  EXPECT_EQ(mounts.pointBehind(link("direct", "by another")), nas);
  EXPECT_EQ(mounts.pointBehind(nas / "a.jpg"), nas);
  EXPECT_EQ(mounts.pointBehind(link("circle", "circle")), std::nullopt);
  EXPECT_EQ(mounts.pointBehind(link("nowhere", "broken")), std::nullopt);
  EXPECT_EQ(mounts.pointBehind(home / "a.jpg"), std::nullopt);
}

TEST(RemoteMounts, areFollowedAsTheyChange) {
  std::string mountInfo = kLocal;
  RemoteMounts mounts(
      std::make_shared<CurrentMounts>([&mountInfo] { return MountTable::parse(mountInfo); }));
  EXPECT_FALSE(mounts.hasAny());
  mountInfo += kShare;
  EXPECT_TRUE(mounts.hasAny());
  mountInfo = kLocal;
  EXPECT_FALSE(mounts.hasAny());
}

TEST(RemoteMounts, areNotTheRootOfAnyTestMachine) {
  RemoteMounts mounts(std::make_shared<CurrentMounts>());
  EXPECT_EQ(mounts.pointOf(FilePath("/proc/self")), std::nullopt);
}

}  // namespace pelmora::platform
