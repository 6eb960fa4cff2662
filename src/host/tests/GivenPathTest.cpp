#include "host/GivenPath.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pelmora::host {

namespace fs = std::filesystem;

class GivenPathTest : public testing::Test {
 protected:
  GivenPathTest() { fs::current_path(home.path().bytes()); }
  ~GivenPathTest() override { fs::current_path(before); }
  GivenPathTest(const GivenPathTest&) = delete;
  GivenPathTest& operator=(const GivenPathTest&) = delete;

  [[nodiscard]] std::string absolute(const std::string& word) const {
    const FilePath path = GivenPath(word).absolute();
    return path.bytes().substr(home.path().bytes().size());
  }
  [[nodiscard]] std::string shown(const std::string& word, const std::string& below) const {
    return GivenPath(word).shown(home.path() / below);
  }

  const fs::path before = fs::current_path();
  platform::TemporaryFolder home;
};

TEST_F(GivenPathTest, isOnePathForAllTheWaysToAFolder) {
  home.mkdir("a/b");
  fs::create_directory_symlink("a", (home.path() / "link").bytes());
  for (const char* word : {"a/b", "./a/b", "a/./b/", "a/b/.", "a/../a/b", "a/b/../b", "link/b"}) {
    EXPECT_EQ(absolute(word), "/a/b") << word;
  }
  EXPECT_EQ(absolute("."), "");
  EXPECT_EQ(absolute("a/b/.."), "/a");
}

TEST_F(GivenPathTest, leavesALinkAtTheEndAndWhatIsNotThereAsTheyAre) {
  home.mkdir("a");
  fs::create_directory_symlink("a", (home.path() / "link").bytes());
  EXPECT_EQ(absolute("link"), "/link");
  EXPECT_EQ(absolute("none"), "/none");
  EXPECT_EQ(absolute("none/at/all"), "/none/at/all");
}

TEST_F(GivenPathTest, tellsWhatIsBelowAsItWasGiven) {
  home.mkdir("a/b");
  EXPECT_EQ(shown("a", "a/b/c.jpg"), "a/b/c.jpg");
  EXPECT_EQ(shown("./a/", "a/b/c.jpg"), "./a/b/c.jpg");
  EXPECT_EQ(shown(".", "a/c.jpg"), "./a/c.jpg");
  EXPECT_EQ(shown("a/b/..", "a/c.jpg"), "a/b/../c.jpg");
  EXPECT_EQ(shown("a/c.jpg", "a/c.jpg"), "a/c.jpg");
  EXPECT_EQ(GivenPath("/").shown(FilePath("/c.jpg")), "/c.jpg");
}

TEST_F(GivenPathTest, tellsWhatIsElsewhereAsItIs) {
  home.mkdir("a");
  EXPECT_EQ(shown("a", "ab/c.jpg"), (home.path() / "ab/c.jpg").bytes());
}

}  // namespace pelmora::host
