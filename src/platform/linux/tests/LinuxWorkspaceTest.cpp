#include "platform/linux/LinuxWorkspace.h"

#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/PropertyList.h"

#include <sys/xattr.h>

#include <gmock/gmock.h>

#include <cerrno>

namespace pelmora::platform {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class LinuxWorkspaceTest : public testing::Test {
 protected:
  /// False where the filesystem keeps no attributes.
  static bool setAttribute(const FilePath& file, const char* name, std::string_view value) {
    const bool set = ::setxattr(file.c_str(), name, value.data(), value.size(), 0) == 0;
    EXPECT_TRUE(set || errno == EOPNOTSUPP);
    return set;
  }

  static bool setMacTags(const FilePath& file, const plist::Value& tags) {
    const plist::Bytes bytes = plist::writeBinary(tags);
    return setAttribute(file, "user.com.apple.metadata:_kMDItemUserTags",
                        std::string(bytes.begin(), bytes.end()));
  }

  LinuxWorkspace workspaceWith(std::string_view labels) {
    return {temporary.write("labels", labels), log, nullptr};
  }

  TemporaryFolder temporary;
  RecordingLog log;
  FilePath picture = temporary.write("a b\xE9.jpg", "x");
  std::vector<std::string> embedded;
  LinuxWorkspace workspace{temporary.path() / "nothing", log, [this](const FilePath& file) {
                             EXPECT_EQ(file.lastComponent(), picture.lastComponent());
                             return embedded;
                           }};
};

}  // namespace

TEST_F(LinuxWorkspaceTest, knowsTheStandardLabels) {
  EXPECT_THAT(workspace.fileLabels(),
              ElementsAre("None", "Gray", "Green", "Purple", "Blue", "Yellow", "Red", "Orange"));
  EXPECT_EQ(workspace.fileLabelColors().size(), workspace.fileLabels().size());
  EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LinuxWorkspaceTest, givesNoneAColourThatCannotBeSeen) {
  const std::vector<Color> colors = workspace.fileLabelColors();
  EXPECT_EQ(colors.front().alpha, 0);
  EXPECT_THAT(std::vector<Color>(colors.begin() + 1, colors.end()),
              Each(testing::Field(&Color::alpha, 1)));
}

TEST_F(LinuxWorkspaceTest, takesFurtherLabelsFromTheUser) {
  const LinuxWorkspace mine = workspaceWith("Holiday #ff0000\nnonsense\nFamily #00ff00\n");
  ASSERT_EQ(mine.fileLabels().size(), 10U);
  ASSERT_EQ(mine.fileLabelColors().size(), 10U);
  EXPECT_EQ(mine.fileLabels()[8], "Holiday");
  EXPECT_EQ(mine.fileLabelColors()[9], (Color{0, 1, 0, 1}));
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(LinuxWorkspaceTest, letsTheUserRecolourALabel) {
  const LinuxWorkspace mine = workspaceWith("Red #ff0000\nMine #111111\nMine #0000ff\n");
  ASSERT_EQ(mine.fileLabels().size(), 9U);
  EXPECT_EQ(mine.fileLabelColors()[6], (Color{1, 0, 0, 1}));
  EXPECT_EQ(mine.fileLabelColors()[8], (Color{0, 0, 1, 1}));
}

TEST_F(LinuxWorkspaceTest, readsTheTagsOfTheDesktop) {
  if (!setAttribute(picture, "user.xdg.tags", "Red, Sea")) return;
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Red", "Sea"));
}

TEST_F(LinuxWorkspaceTest, readsTheTagsOfAMac) {
  if (!setMacTags(picture, plist::Array{"Red\n6", "Sea"})) return;
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Red", "Sea"));
}

TEST_F(LinuxWorkspaceTest, prefersTheTagsOfTheDesktop) {
  if (!setMacTags(picture, plist::Array{"Green\n2"})) return;
  ASSERT_TRUE(setAttribute(picture, "user.xdg.tags", "Red"));
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Red"));
  ASSERT_TRUE(setAttribute(picture, "user.xdg.tags", " ,"));
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Green"));
}

TEST_F(LinuxWorkspaceTest, readsEmbeddedTagsWhereTheFileHasNoOthers) {
  embedded = {"Lake"};
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Lake"));
  if (!setAttribute(picture, "user.xdg.tags", " ,")) return;
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Lake"));
  ASSERT_TRUE(setMacTags(picture, plist::Array{"Green\n2"}));
  EXPECT_THAT(workspace.tagNames(picture), ElementsAre("Green"));
}

TEST_F(LinuxWorkspaceTest, hasNoTagsWhereNoneCanBeRead) {
  EXPECT_THAT(workspace.tagNames(picture), IsEmpty());
  if (!setAttribute(picture, "user.com.apple.metadata:_kMDItemUserTags", "damaged")) return;
  EXPECT_THAT(workspace.tagNames(picture), IsEmpty());
}

}  // namespace pelmora::platform
