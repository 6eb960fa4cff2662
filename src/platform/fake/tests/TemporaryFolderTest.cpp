#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace pelmora::platform {

namespace {

namespace fs = std::filesystem;

std::string contents(const FilePath& path) {
  std::ifstream file(path.bytes(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(TemporaryFolder, isAnEmptyFolderOfItsOwn) {
  const TemporaryFolder one;
  const TemporaryFolder other;
  EXPECT_NE(one.path(), other.path());
  EXPECT_TRUE(fs::is_directory(one.path().bytes()));
  EXPECT_TRUE(fs::is_empty(one.path().bytes()));
  EXPECT_EQ(fs::canonical(one.path().bytes()).string(), one.path().bytes());
}

TEST(TemporaryFolder, writesFilesWithTheFoldersAboveThem) {
  const TemporaryFolder folder;
  const std::string bytes("a\0\xFF\n", 4);
  const FilePath path = folder.write("one/two/\xE9.jpg", bytes);
  EXPECT_EQ(path, folder.path() / "one/two/\xE9.jpg");
  EXPECT_EQ(contents(path), bytes);
  folder.write("one/two/\xE9.jpg", "b");
  EXPECT_EQ(contents(path), "b");
}

TEST(TemporaryFolder, makesFoldersAndLinks) {
  const TemporaryFolder folder;
  const FilePath target = folder.mkdir("a/b");
  EXPECT_TRUE(fs::is_directory(target.bytes()));
  EXPECT_EQ(fs::read_symlink(folder.link("absolute", target).bytes()).string(), target.bytes());
  EXPECT_EQ(fs::read_symlink(folder.link("new/relative", "../a").bytes()).string(), "../a");
  EXPECT_TRUE(fs::is_symlink(folder.link("broken", "nowhere").bytes()));
}

TEST(TemporaryFolder, goesWithAllItsContentsButNothingBehindALink) {
  const TemporaryFolder kept;
  const FilePath keptFile = kept.write("kept");
  FilePath path;
  {
    const TemporaryFolder folder;
    path = folder.path();
    folder.write("a/b/c");
    folder.link("a/link", kept.path());
    fs::permissions((path / "a/b").bytes(), fs::perms::none);
  }
  EXPECT_FALSE(fs::exists(path.bytes()));
  EXPECT_TRUE(fs::exists(keptFile.bytes()));
}

}  // namespace pelmora::platform
