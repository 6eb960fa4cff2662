#include "platform/linux/SmallFile.h"

#include "platform/fake/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

Result<std::string> read(const FilePath& path, std::size_t limit) {
  return readSmallFile(AT_FDCWD, path.c_str(), limit);
}

}  // namespace

TEST(SmallFile, readsFilesUpToTheLimit) {
  const TemporaryFolder temporary;
  const std::string bytes(10'000, 'x');
  const FilePath file = temporary.write("file", bytes);
  EXPECT_EQ(read(file, 10'000).value(), bytes);
  EXPECT_EQ(read(file, 10'001).value(), bytes);
  EXPECT_EQ(read(temporary.write("empty"), 0).value(), "");
}

TEST(SmallFile, refusesLargerFiles) {
  const TemporaryFolder temporary;
  const FilePath file = temporary.write("file", std::string(10'000, 'x'));
  EXPECT_EQ(read(file, 9'999).error().message, file.bytes() + ": File too large");
}

TEST(SmallFile, doesNotWaitForAPipe) {
  const TemporaryFolder temporary;
  const FilePath pipe = temporary.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(read(pipe, 100).ok());
}

TEST(SmallFile, refusesWhatIsNoFile) {
  const TemporaryFolder temporary;
  EXPECT_FALSE(read(temporary.path(), 100).ok());
  EXPECT_FALSE(read(FilePath("/dev/zero"), 100).ok());
  EXPECT_FALSE(read(temporary.path() / "nothing", 100).ok());
}

TEST(SmallFile, readsFilesOfTheKernelThatTellNoSize) {
  EXPECT_FALSE(read(FilePath("/proc/self/mountinfo"), 1024 * 1024).value().empty());
}

}  // namespace pelmora::platform
