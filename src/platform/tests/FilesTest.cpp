#include "platform/Files.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/PosixFiles.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

class FilesTest : public testing::Test {
 protected:
  TemporaryFolder temporary;
  PosixFiles files;
};

}  // namespace

TEST_F(FilesTest, takesAFolderForADirectory) {
  EXPECT_TRUE(isDirectory(files, temporary.mkdir("folder")));
}

TEST_F(FilesTest, takesALinkToAFolderForADirectory) {
  const FilePath folder = temporary.mkdir("folder");
  EXPECT_TRUE(isDirectory(files, temporary.link("link", folder)));
  EXPECT_TRUE(isDirectory(files, temporary.link("link to the link", "link")));
}

TEST_F(FilesTest, takesADesktopLinkToAFolderForADirectory) {
  const FilePath folder = temporary.mkdir("folder");
  const FilePath link = temporary.write(
      "Elsewhere.desktop", "[Desktop Entry]\nType=Link\nURL=file://" + folder.bytes() + "\n");
  EXPECT_TRUE(isDirectory(files, link));
}

TEST_F(FilesTest, takesNothingElseForADirectory) {
  const FilePath file = temporary.write("file", "x");
  EXPECT_FALSE(isDirectory(files, file));
  EXPECT_FALSE(isDirectory(files, temporary.link("link to a file", file)));
  EXPECT_FALSE(isDirectory(files, temporary.link("broken", "nowhere")));
  EXPECT_FALSE(isDirectory(files, temporary.link("loop", "loop")));
  EXPECT_FALSE(isDirectory(files, temporary.path() / "nothing"));
  EXPECT_FALSE(isDirectory(files, FilePath()));
}

}  // namespace pelmora::platform
