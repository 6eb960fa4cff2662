#include "platform/FileContents.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pelmora::platform {

namespace {

std::string textOf(const FileContents& contents) {
  return {contents.bytes().begin(), contents.bytes().end()};
}

}  // namespace

TEST(FileContents, readsAWholeFile) {
  const TemporaryFolder folder;
  const FilePath file = folder.write("a", std::string(100'000, 'x'));
  const Result<FileContents> contents = FileContents::read(file, 100'000);
  ASSERT_TRUE(contents) << contents.error().message;
  EXPECT_EQ(textOf(*contents), std::string(100'000, 'x'));
  EXPECT_EQ(contents->stamp(), stampOf(file));
}

TEST(FileContents, readsAnEmptyFileAndThroughALink) {
  const TemporaryFolder folder;
  folder.write("empty");
  const Result<FileContents> contents = FileContents::read(folder.link("link", "empty"), 10);
  ASSERT_TRUE(contents) << contents.error().message;
  EXPECT_TRUE(contents->bytes().empty());
}

TEST(FileContents, saysWhyThereAreNone) {
  const TemporaryFolder folder;
  const FilePath missing = folder.path() / "missing";
  const Result<FileContents> contents = FileContents::read(missing, 10);
  ASSERT_FALSE(contents);
  EXPECT_EQ(contents.error().message, missing.bytes() + ": No such file or directory");
  EXPECT_EQ(stampOf(missing), std::nullopt);
}

TEST(FileContents, refusesLargerFiles) {
  const TemporaryFolder folder;
  EXPECT_FALSE(FileContents::read(folder.write("a", "12345678901"), 10));
}

TEST(FileContents, refusesPipesAndFoldersWithoutWaiting) {
  const TemporaryFolder folder;
  const FilePath pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(FileContents::read(pipe, 10));
  EXPECT_FALSE(FileContents::read(folder.path(), 10));
}

TEST(FileContents, stampsChangeWithTheFile) {
  const TemporaryFolder folder;
  const FilePath file = folder.write("a", "1");
  const auto before = stampOf(file);
  folder.write("a", "22");
  EXPECT_NE(stampOf(file), before);
}

}  // namespace pelmora::platform
