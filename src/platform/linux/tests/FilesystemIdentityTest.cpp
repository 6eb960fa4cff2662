#include "platform/linux/FilesystemIdentity.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FilesystemIdentity, isTheSameWhenNothingKnownDiffers) {
  EXPECT_TRUE(isSame({"a", 1}, {"a", 1}));
  EXPECT_TRUE(isSame({"a", 0}, {"a", 1}));
  EXPECT_TRUE(isSame({"", 1}, {"a", 1}));
}

TEST(FilesystemIdentity, differsWhenSomethingKnownDoes) {
  EXPECT_FALSE(isSame({"a", 1}, {"b", 1}));
  EXPECT_FALSE(isSame({"a", 1}, {"a", 2}));
  EXPECT_FALSE(isSame({"", 1}, {"", 2}));
}

TEST(FilesystemIdentity, isNotTheSameWhenNothingIsKnown) {
  EXPECT_FALSE(isSame({}, {}));
  EXPECT_FALSE(isSame({"a", 0}, {"", 1}));
}

TEST(FilesystemIdentity, isThatOfEveryFolderOnIt) {
  const TemporaryFolder temporary;
  const MountTable mounts = MountTable::ofThisProcess();
  const Mount* const mount = mounts.mountOf(temporary.path());
  const FilesystemIdentity identity = filesystemIdentity(temporary.path(), mount);
  EXPECT_NE(identity, FilesystemIdentity());
  EXPECT_EQ(filesystemIdentity(temporary.mkdir("a"), mount), identity);
  EXPECT_FALSE(isSame(filesystemIdentity(FilePath("/proc"), nullptr), identity));
}

TEST(FilesystemIdentity, isWhatANetworkFilesystemIsMountedFrom) {
  const TemporaryFolder temporary;
  const Mount mount{temporary.path(), FilePath("/"), "nfs4", "nas:/photos"};
  EXPECT_EQ(filesystemIdentity(temporary.path(), &mount).name, "nas:/photos");
}

TEST(FilesystemIdentity, isUnknownForWhatIsNotThere) {
  EXPECT_EQ(filesystemIdentity(FilePath("/nowhere/at/all"), nullptr), FilesystemIdentity());
  EXPECT_FALSE(hasLastingInodes(FilePath("/nowhere/at/all")));
}

TEST(FilesystemIdentity, hasInodesThatLastOnDisksOnly) {
  EXPECT_TRUE(hasLastingInodes(TemporaryFolder().path()));
  EXPECT_FALSE(hasLastingInodes(FilePath("/proc")));
}

TEST(FilesystemIdentity, readsTheUuidOfADevice) {
  const TemporaryFolder temporary;
  (void)temporary.link("0000-0001", "/dev/zero");
  (void)temporary.link("0000-0002", "/dev/null");
  (void)temporary.link("0000-0003", "/nowhere/at/all");
  EXPECT_EQ(uuidOfDevice(FilePath("/dev/null"), temporary.path()), "0000-0002");
  EXPECT_EQ(uuidOfDevice(FilePath("/dev/full"), temporary.path()), "");
  EXPECT_EQ(uuidOfDevice(FilePath("overlay"), temporary.path()), "");
  EXPECT_EQ(uuidOfDevice(temporary.write("file"), temporary.path()), "");
  EXPECT_EQ(uuidOfDevice(FilePath("/dev/null"), temporary.path() / "nothing"), "");
}

}  // namespace pelmora::platform
