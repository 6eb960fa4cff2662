#include "platform/linux/index/StoreFile.h"

#include "platform/fake/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace pelmora::platform {
namespace {

bool isThere(const FilePath& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

bool isLocked(const FilePath& path) {
  const FileDescriptor other(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  return other.isOpen() && ::flock(other.get(), LOCK_EX | LOCK_NB) != 0;
}

TEST(StoreFile, isLockedUntilTheLockGoes) {
  const TemporaryFolder folder;
  StoreFile file(folder.path() / "below/index");
  {
    const auto lock = file.lock();
    ASSERT_TRUE(lock.ok()) << lock.error().message;
    EXPECT_TRUE(isLocked(folder.path() / "below/index.lock"));
  }
  EXPECT_FALSE(isLocked(folder.path() / "below/index.lock"));
}

TEST(StoreFile, isNotWaitedForWithoutEnd) {
  const TemporaryFolder folder;
  StoreFile one(folder.path() / "index");
  StoreFile other(folder.path() / "index", {.atMost = std::chrono::milliseconds(0)});
  const auto lock = one.lock();
  ASSERT_TRUE(lock.ok());
  EXPECT_FALSE(other.lock().ok());
}

TEST(StoreFile, isForTheUserAlone) {
  const TemporaryFolder folder;
  StoreFile file(folder.path() / "below/index");
  ASSERT_TRUE(file.lock().ok());
  ASSERT_TRUE(file.make().ok());
  struct stat status {};
  ASSERT_EQ(::stat(file.path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFREG | 0600));
  EXPECT_EQ(status.st_size, 0);
  ASSERT_EQ(::stat((folder.path() / "below").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFDIR | 0700));
}

TEST(StoreFile, leavesAFileThatHoldsSomething) {
  const TemporaryFolder folder;
  const FilePath path = folder.write("index", "held");
  const FilePath log = folder.write("index-wal", "log");
  StoreFile file(path);
  const auto before = file.identity();
  ASSERT_TRUE(file.make().ok());
  EXPECT_EQ(file.identity(), before);
  EXPECT_TRUE(isThere(log));
}

TEST(StoreFile, takesAwayALogWithoutItsDatabase) {
  const TemporaryFolder folder;
  const FilePath log = folder.write("index-wal", "log");
  StoreFile file(folder.path() / "index");
  ASSERT_TRUE(file.make().ok());
  EXPECT_FALSE(isThere(log));
}

TEST(StoreFile, replacesWhatIsNoFile) {
  const TemporaryFolder folder;
  const FilePath target = folder.write("target", "somebody's");
  folder.link("link", target);
  ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
  for (const char* name : {"link", "pipe"}) {
    StoreFile file(folder.path() / name);
    ASSERT_TRUE(file.make().ok());
    struct stat status {};
    ASSERT_EQ(::lstat(file.path().c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode)) << name;
  }
  EXPECT_TRUE(isThere(target));
}

TEST(StoreFile, tellsWhyItCannotBe) {
  const TemporaryFolder folder;
  EXPECT_FALSE(StoreFile(folder.mkdir("folder")).make().ok());
  const FilePath file = folder.write("file");
  EXPECT_FALSE(StoreFile(file / "index").lock().ok());
}

TEST(StoreFile, isTakenAwayWithWhatStandsBesideIt) {
  const TemporaryFolder folder;
  const FilePath path = folder.write("index", "held");
  folder.write("index-wal");
  folder.write("index-shm");
  StoreFile file(path);
  file.takeAway();
  EXPECT_EQ(file.identity(), std::nullopt);
  EXPECT_FALSE(isThere(folder.path() / "index-wal"));
  EXPECT_FALSE(isThere(folder.path() / "index-shm"));
}

TEST(StoreFile, isFoundBehindALinkToItsFolder) {
  const TemporaryFolder folder;
  folder.link("link", folder.mkdir("real"));
  StoreFile file(folder.path() / "link/index");
  ASSERT_TRUE(file.lock().ok());
  EXPECT_EQ(file.path(), folder.path() / "real/index");
}

}  // namespace
}  // namespace pelmora::platform
