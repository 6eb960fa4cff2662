#include "platform/AtomicFile.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileContents.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <filesystem>

namespace pelmora::platform {

namespace {

using testing::UnorderedElementsAre;

Status write(const FilePath& file, std::string_view text) {
  return writeAtomically(file, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::string textOf(const FilePath& file) {
  const Result<FileContents> contents = FileContents::read(file, 1 << 20);
  if (!contents) return contents.error().message;
  return {contents->bytes().begin(), contents->bytes().end()};
}

std::vector<std::string> namesIn(const FilePath& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.bytes())) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

}  // namespace

TEST(AtomicFile, replacesAFileAndLeavesNothingElse) {
  const TemporaryFolder folder;
  const FilePath file = folder.write("list", "old");
  EXPECT_TRUE(write(file, "new"));
  EXPECT_EQ(textOf(file), "new");
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("list"));
}

TEST(AtomicFile, isForItsOwnerAlone) {
  const TemporaryFolder folder;
  const FilePath file = folder.path() / "list";
  ASSERT_TRUE(write(file, ""));
  struct stat facts {};
  ASSERT_EQ(::stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0600U);
}

TEST(AtomicFile, leavesTheOldFileWhenItCannotReplaceIt) {
  const TemporaryFolder folder;
  folder.write("list/inside", "old");
  const Status status = write(folder.path() / "list", "new");
  ASSERT_FALSE(status);
  EXPECT_EQ(status.error().message, (folder.path() / "list").bytes() + ": Is a directory");
  EXPECT_EQ(textOf(folder.path() / "list/inside"), "old");
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre("list"));
}

TEST(AtomicFile, saysSoWhenThereIsNoFolder) {
  const TemporaryFolder folder;
  EXPECT_FALSE(write(folder.path() / "missing/list", "new"));
}

TEST(AtomicFile, sweepsWhatKilledWritersLeft) {
  const TemporaryFolder folder;
  folder.write(".list.tmp-a1B2c3");
  folder.write(".list.tmp-zzzzzz", "half");
  folder.write(".list.tmp-toolong");
  folder.write(".lists.tmp-a1B2c3");
  folder.write("list.tmp-a1B2c3");
  folder.mkdir(".list.tmp-folder");
  folder.link(".list.tmp-linked", "list.tmp-a1B2c3");
  sweepTemporaryFiles(folder.path() / "list");
  EXPECT_THAT(namesIn(folder.path()),
              UnorderedElementsAre(".list.tmp-toolong", ".lists.tmp-a1B2c3", "list.tmp-a1B2c3",
                                   ".list.tmp-folder", ".list.tmp-linked"));
}

TEST(AtomicFile, leavesTheTemporaryFilesOfWritersAtWork) {
  const TemporaryFolder folder;
  const FilePath busy = folder.write(".list.tmp-a1B2c3");
  const FileDescriptor writer(::open(busy.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(writer.get(), LOCK_EX), 0);
  sweepTemporaryFiles(folder.path() / "list");
  EXPECT_THAT(namesIn(folder.path()), UnorderedElementsAre(".list.tmp-a1B2c3"));
}

TEST(AtomicFile, sweepsAMissingFolderWithoutHarm) {
  const TemporaryFolder folder;
  sweepTemporaryFiles(folder.path() / "missing/list");
  EXPECT_TRUE(namesIn(folder.path()).empty());
}

TEST(AtomicFile, keepsTheModeOfAFileWhoseContentsItReplaces) {
  const TemporaryFolder folder;
  const FilePath file = folder.write("list", "old");
  ASSERT_EQ(::chmod(file.c_str(), 0640), 0);
  const std::string text = "new";
  ASSERT_TRUE(replaceContents(file, {reinterpret_cast<const std::uint8_t*>(text.data()), 3}));
  EXPECT_EQ(textOf(file), "new");
  struct stat facts {};
  ASSERT_EQ(::stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0640U);
}

TEST(AtomicFile, followsALinkToTheFileWhoseContentsItReplaces) {
  const TemporaryFolder folder;
  const FilePath file = folder.write("far/list", "old");
  const FilePath link = folder.link("list", "far/list");
  ASSERT_TRUE(replaceContents(link, {}));
  EXPECT_TRUE(std::filesystem::is_symlink(link.bytes()));
  EXPECT_EQ(textOf(file), "");
  EXPECT_THAT(namesIn(folder.path() / "far"), UnorderedElementsAre("list"));
}

TEST(AtomicFile, replacesTheContentsOfNoFileThatALinkOnlyPromises) {
  const TemporaryFolder folder;
  const FilePath link = folder.link("list", "nowhere");
  EXPECT_FALSE(replaceContents(link, {}));
  EXPECT_TRUE(std::filesystem::is_symlink(link.bytes()));
  EXPECT_TRUE(replaceContents(folder.path() / "made", {}));
}

}  // namespace pelmora::platform
