#include "view/DisplayListFile.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace pelmora::view {

namespace {

std::string bytesOf(const FilePath& path) {
  std::ifstream file(path.bytes(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(DisplayListFile, isUtf16WithAByteOrderMarkAndCarriageReturns) {
  const platform::TemporaryFolder folder;
  const FilePath list = folder.path() / "list";
  ASSERT_TRUE(createDisplayListFile(list));
  ASSERT_TRUE(writeDisplayListFile(list, {FilePath("/a"), FilePath("/\xC3\xA9")}));
  EXPECT_EQ(bytesOf(list), std::string("\xFF\xFE/\0a\0\r\0/\0\xE9\0\r\0", 14));
}

TEST(DisplayListFile, replacesBytesThatAreNoText) {
  EXPECT_EQ(utf16WithByteOrderMark("/\xE9.jpg"), u"\uFEFF/\uFFFD.jpg");
}

TEST(DisplayListFile, isCutWhenItGetsShorter) {
  const platform::TemporaryFolder folder;
  const FilePath list = folder.path() / "list";
  ASSERT_TRUE(createDisplayListFile(list));
  writeDisplayListFile(list, {FilePath("/a long path"), FilePath("/another")});
  writeDisplayListFile(list, {FilePath("/b")});
  EXPECT_EQ(bytesOf(list).size(), 2U + 2 * 3);
  writeDisplayListFile(list, {});
  EXPECT_EQ(bytesOf(list), "\xFF\xFE");
}

TEST(DisplayListFile, isOnlyWrittenWhereItWasMade) {
  const platform::TemporaryFolder folder;
  EXPECT_FALSE(writeDisplayListFile(folder.path() / "none", {FilePath("/a")}));
  EXPECT_FALSE(std::filesystem::exists((folder.path() / "none").bytes()));
  EXPECT_FALSE(createDisplayListFile(folder.path() / "missing" / "list"));
}

TEST(DisplayListFile, isForItsUserAlone) {
  const platform::TemporaryFolder folder;
  ASSERT_TRUE(createDisplayListFile(folder.path() / "list"));
  const auto mode = std::filesystem::status((folder.path() / "list").bytes()).permissions();
  EXPECT_EQ(mode & std::filesystem::perms(077), std::filesystem::perms::none);
}

}  // namespace pelmora::view
