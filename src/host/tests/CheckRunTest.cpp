#include "host/CheckRun.h"

#include "platform/fake/FakeImageLoader.h"
#include "platform/fake/FakeWorkspace.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/PosixFiles.h"
#include "platform/SteppedTime.h"

#include <gtest/gtest.h>
#include <QImage>

#include <filesystem>

namespace pelmora::host {

namespace {

class CheckRunTest : public testing::Test {
 protected:
  /// Whether all is well, by a loader that takes 41 ms for each picture.
  bool check(const std::vector<std::string>& words, const std::string& out = "") {
    lines.clear();
    const CheckRequest request{words, 1620, FilePath(out)};
    const CheckTools tools{
        .clock = clock,
        .files = files,
        .workspace = workspace,
        .inspect = [this](const FilePath& file, int side) { return inspect(file, side); },
        .tell = [this](const std::string& line) { lines.push_back(line); },
        .complain = [this](const std::string& problem) { lines.push_back("! " + problem); }};
    return CheckRun(request, tools).run();
  }

  Result<platform::InspectedPicture> inspect(const FilePath& file, int side) {
    clock.advanceTo(clock.mediaTime() + 0.041);
    Result<platform::Image> image = loader.load(file, side);
    if (!image) return image.error();
    return platform::InspectedPicture{
        *std::move(image), "JPEG", {4000, 6000}, orientation, profile};
  }

  [[nodiscard]] std::string pathOf(const std::string& name) const {
    return (home.path() / name).bytes();
  }

  platform::TemporaryFolder home;
  platform::SteppedClock clock;
  platform::PosixFiles files;
  platform::FakeWorkspace workspace;
  platform::FakeImageLoader loader;
  int orientation = 6;
  std::string profile = "Display P3";
  std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;

}  // namespace

TEST_F(CheckRunTest, tellsWhatIsKnownOfAPicture) {
  const FilePath file = home.write("a.jpg");
  loader.setSize(file, {6000, 4000});
  workspace.tags[file] = {"red", "holiday"};
  EXPECT_TRUE(check({file.bytes()}));
  EXPECT_EQ(lines, (Lines{file.bytes() + ": JPEG, 6000 × 4000, orientation 6, Display P3, "
                                         "tags red; holiday, 41 ms"}));
  EXPECT_EQ(loader.loads().front().longestSide, 1620);
}

TEST_F(CheckRunTest, tellsTheSamePartsOfAPictureOfWhichLittleIsKnown) {
  orientation = 1;
  profile = "sRGB";
  EXPECT_TRUE(check({home.write("a.jpg").bytes()}));
  EXPECT_EQ(lines, (Lines{pathOf("a.jpg") + ": JPEG, 1 × 1, orientation 1, sRGB, no tags, 41 ms"}));
}

TEST_F(CheckRunTest, tellsWhyAPictureIsNotShownAndGoesOn) {
  loader.fail(home.write("a.jpg"), "it is damaged (too\nshort)");
  loader.makeInvalid(home.write("b.jpg"));
  home.write("c.jpg");
  EXPECT_FALSE(check({home.path().bytes()}));
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0], pathOf("a.jpg") + ": not shown: it is damaged (too\\x0Ashort)");
  EXPECT_EQ(lines[1], pathOf("b.jpg") + ": not shown: it has no pixels");
  EXPECT_NE(lines[2].find("c.jpg: JPEG"), std::string::npos);
}

TEST_F(CheckRunTest, keepsNamesProfilesAndTagsFromForgingALineOrAPart) {
  const FilePath file = home.write("a\n\xE9.jpg");
  profile = "P3, but\tnot ";
  workspace.tags[file] = {"sun, sea\x1B[31m"};
  EXPECT_TRUE(check({file.bytes()}));
  EXPECT_EQ(lines, (Lines{home.path().bytes() + "/a\\x0A\\xE9.jpg: JPEG, 1 × 1, orientation 6, "
                                                "P3; but\\x09not, tags sun; sea\\x1B[31m, 41 ms"}));
}

TEST_F(CheckRunTest, tellsPathsAsTheyWereGiven) {
  home.write("a/b.jpg");
  const std::string word = std::filesystem::relative(home.path().bytes()).string();
  EXPECT_TRUE(check({word + "/", word + "/a/../a/b.jpg"}));
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].find(word + "/a/b.jpg: JPEG"), 0U);
  EXPECT_EQ(lines[1].find(word + "/a/../a/b.jpg: JPEG"), 0U);
}

TEST_F(CheckRunTest, countsAFolderThatCannotBeReadAsAFailure) {
  class Locked : public platform::PosixFiles {
   public:
    [[nodiscard]] Result<std::shared_ptr<const platform::Listing>> list(
        const FilePath&, platform::FinalLink) const override {
      return Error{"Permission denied"};
    }
  };
  const Locked locked;
  const CheckRequest request{{home.path().bytes()}, 1620, {}};
  const CheckTools tools{.clock = clock,
                         .files = locked,
                         .workspace = workspace,
                         .inspect = {},
                         .tell = [this](const std::string& line) { lines.push_back(line); },
                         .complain = {}};
  EXPECT_FALSE(CheckRun(request, tools).run());
  EXPECT_EQ(lines, (Lines{home.path().bytes() + ": not shown: Permission denied"}));
}

TEST_F(CheckRunTest, writesWhatWouldBeShownUnderNamesOfItsOwn) {
  home.write("a/x.jpg");
  home.write("b/x.jpg");
  home.write("c/x.jpg");
  const std::string out = pathOf("new/folder");
  loader.setDefaultSize({30, 20});
  EXPECT_TRUE(check({home.path().bytes()}, out));
  EXPECT_EQ(lines.size(), 3U);
  for (const char* name : {"/x.jpg.png", "/x.jpg-2.png", "/x.jpg-3.png"}) {
    const QImage written(QString::fromStdString(out + name));
    EXPECT_EQ(written.size(), QSize(30, 20)) << name;
    EXPECT_EQ(written.pixel(5, 5), 0xFF808080) << name;
  }
}

TEST_F(CheckRunTest, doesNotSearchTheFolderThatItWritesTo) {
  home.write("a.jpg");
  const std::string out = pathOf("z");
  EXPECT_TRUE(check({home.path().bytes()}, out));
  EXPECT_TRUE(check({home.path().bytes()}, out));
  EXPECT_EQ(lines.size(), 1U);
}

TEST_F(CheckRunTest, shortensNamesThatGetTooLong) {
  const FilePath file = home.write(std::string(255, 'a'));
  EXPECT_TRUE(check({file.bytes()}, pathOf("out")));
  EXPECT_TRUE(std::filesystem::exists(pathOf("out/" + std::string(240, 'a') + ".png")));
}

TEST_F(CheckRunTest, looksAtNothingWhenTheFolderCannotBeMade) {
  const FilePath file = home.write("a.jpg");
  EXPECT_FALSE(check({file.bytes()}, file.bytes() + "/out"));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].find("! " + file.bytes() + "/out: "), 0U);
  EXPECT_FALSE(check({file.bytes()}, file.bytes()));
  EXPECT_EQ(lines.size(), 1U);
}

TEST_F(CheckRunTest, tellsOfAFileThatCannotBeWrittenAndGoesOn) {
  home.write("a/a.jpg");
  home.write("a/b.jpg");
  home.mkdir("out/a.jpg.png");
  EXPECT_FALSE(check({pathOf("a")}, pathOf("out")));
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[1], "! " + pathOf("out/a.jpg.png") + ": Is a directory");
  EXPECT_TRUE(std::filesystem::exists(pathOf("out/b.jpg.png")));
}

TEST_F(CheckRunTest, writesNothingIntoAFolderThatItReads) {
  const FilePath photo = home.write("photos/photo", "x");
  const FilePath other = home.write("photos/photo.png", "y");
  home.mkdir("empty");
  for (const std::string& word : {pathOf("photos"), photo.bytes(), pathOf("photos/")}) {
    EXPECT_FALSE(check({pathOf("empty"), word}, pathOf("photos"))) << word;
    EXPECT_EQ(lines, Lines{"! " + pathOf("photos") +
                           ": pictures are read from there; choose another folder"});
  }
  EXPECT_EQ(std::filesystem::file_size(other.bytes()), 1U);
}

}  // namespace pelmora::host
