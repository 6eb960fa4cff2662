#include "host/PictureFinder.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/PosixFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelmora::host {

namespace {

class PictureFinderTest : public testing::Test {
 protected:
  /// What is found from the test's folder on, as paths below it; what cannot be read has a "!".
  std::vector<std::string> find(const std::string& name = "") {
    found.clear();
    finder.find(name.empty() ? home.path() : home.path() / name);
    return found;
  }
  [[nodiscard]] std::string below(const FilePath& path) const {
    return path.bytes().substr(home.path().bytes().size() + 1);
  }

  platform::TemporaryFolder home;
  platform::PosixFiles files;
  std::vector<std::string> found;
  PictureFinder finder{
      files,
      {.file = [this](const FilePath& file) { found.push_back(below(file)); },
       .unreadable = [this](const FilePath& folder,
                            const Error&) { found.push_back("!" + below(folder)); }}};
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(PictureFinderTest, findsFilesLevelByLevelInTheOrderOfTheirNamesBytes) {
  for (const char* name : {"b.jpg", "a/z.jpg", "a/B.jpg", "a/y/1.jpg", "\xE9.jpg", "Z.jpg"}) {
    home.write(name);
  }
  EXPECT_EQ(find(), (Names{"Z.jpg", "b.jpg", "\xE9.jpg", "a/B.jpg", "a/z.jpg", "a/y/1.jpg"}));
}

TEST_F(PictureFinderTest, leavesOutWhatIsHiddenAndPackages) {
  for (const char* name : {".a.jpg", ".b/c.jpg", "Library.photoslibrary/d.jpg", "e/f.jpg",
                           "g/Contents/Info.plist", "g/h.jpg"}) {
    home.write(name);
  }
  home.write("secret.jpg");
  home.write(".hidden", "secret.jpg\n");
  EXPECT_EQ(find(), (Names{"e/f.jpg"}));
}

TEST_F(PictureFinderTest, takesAFileForItselfEvenWhereThereIsNone) {
  home.write(".a.jpg");
  EXPECT_EQ(find(".a.jpg"), (Names{".a.jpg"}));
  EXPECT_EQ(find("nothing.jpg"), (Names{"nothing.jpg"}));
}

TEST_F(PictureFinderTest, followsTheLinkThatItWasGiven) {
  home.write("a/b.jpg");
  home.link("c", "a");
  EXPECT_EQ(find("c"), (Names{"c/b.jpg"}));
}

TEST_F(PictureFinderTest, takesALinkInTheFirstFolderForAFile) {
  home.write("a/b.jpg");
  home.link("c", "a");
  EXPECT_EQ(find(), (Names{"c", "a/b.jpg"}));
}

TEST_F(PictureFinderTest, findsTheFilesOfALinkedFolderButNotThoseBelow) {
  home.write("a/b.jpg");
  home.write("a/c/d.jpg");
  home.mkdir("e/f");
  home.link("e/f/g", home.path() / "a");
  EXPECT_EQ(find("e"), (Names{"a/b.jpg"}));
}

TEST_F(PictureFinderTest, findsAllBelowAFolderThatALinkLeadsToBefore) {
  home.write("a/b/deep.jpg");
  home.write("1/c.jpg");
  home.link("1/link", home.path() / "a");
  EXPECT_EQ(find(), (Names{"1/c.jpg", "a/b/deep.jpg"}));
}

TEST_F(PictureFinderTest, looksIntoNoFolderTwice) {
  home.write("a/b/c.jpg");
  home.link("a/b/up", "../..");
  home.link("a/b/same", ".");
  home.link("a/b/nowhere", "nothing");
  EXPECT_EQ(find(), (Names{"a/b/c.jpg", "a/b/nowhere"}));
}

TEST_F(PictureFinderTest, leavesOutTheFolderThatItIsTold) {
  home.write("a/b.jpg");
  home.write("c/d.jpg");
  finder.leaveOut(home.path() / "c");
  EXPECT_EQ(find(), (Names{"a/b.jpg"}));
  EXPECT_EQ(find("c"), (Names{"c/d.jpg"}));
}

TEST(PictureFinder, tellsOfFoldersThatCannotBeRead) {
  // Whoever may read everything has no unreadable folder of their own.
  class Locked : public platform::PosixFiles {
   public:
    [[nodiscard]] Result<std::shared_ptr<const platform::Listing>> list(
        const FilePath& folder, platform::FinalLink link) const override {
      if (folder.lastComponent().starts_with("locked")) return Error{"Permission denied"};
      return PosixFiles::list(folder, link);
    }
  };
  const platform::TemporaryFolder home;
  home.write("a/locked 1/b.jpg");
  home.mkdir("locked 2");
  const Locked files;
  Names told;
  PictureFinder finder(
      files, {.file = [](const FilePath&) {},
              .unreadable =
                  [&told](const FilePath& folder, const Error& why) {
                    told.push_back(std::string(folder.lastComponent()) + ": " + why.message);
                  }});
  finder.find(home.path());
  finder.find(home.path() / "locked 2");
  EXPECT_EQ(told, (Names{"locked 2: Permission denied", "locked 1: Permission denied",
                         "locked 2: Permission denied"}));
}

}  // namespace pelmora::host
