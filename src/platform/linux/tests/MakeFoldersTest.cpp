#include "platform/linux/MakeFolders.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pelmora::platform {

TEST(MakeFolders, makesWhatIsMissingForTheUserAlone) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.path() / "a/b c/\xE9";
  ASSERT_TRUE(makeFolders(folder));
  for (const FilePath& made : {folder, folder.parent(), folder.parent().parent()}) {
    struct stat facts {};
    ASSERT_EQ(::stat(made.c_str(), &facts), 0) << made.bytes();
    EXPECT_TRUE(S_ISDIR(facts.st_mode));
    EXPECT_EQ(facts.st_mode & 0777U, 0700U);
  }
}

TEST(MakeFolders, leavesWhatIsThereAlone) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("a");
  ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
  EXPECT_TRUE(makeFolders(folder));
  EXPECT_TRUE(makeFolders(FilePath("/")));
  struct stat facts {};
  ASSERT_EQ(::stat(folder.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0755U);
}

TEST(MakeFolders, saysWhyItCannot) {
  const TemporaryFolder temporary;
  const FilePath below = temporary.write("file") / "below";
  EXPECT_EQ(makeFolders(below).error().message, below.bytes() + ": Not a directory");
  EXPECT_FALSE(makeFolders(below / "deeper"));
  EXPECT_FALSE(makeFolders(FilePath()));
}

}  // namespace pelmora::platform
