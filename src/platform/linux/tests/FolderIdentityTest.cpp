#include "platform/linux/FolderIdentity.h"

#include "platform/fake/TemporaryFolder.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FolderIdentity, isTheSameByAnyPath) {
  const TemporaryFolder temporary;
  const FilePath folder = temporary.mkdir("folder");
  const FilePath link = temporary.link("link", "folder");
  const auto identity = folderIdentity(folder);
  ASSERT_TRUE(identity.has_value());
  struct stat status {};
  ASSERT_EQ(::stat(folder.c_str(), &status), 0);
  EXPECT_EQ(identity->inode, status.st_ino);
  EXPECT_EQ(identity->device, status.st_dev);
  EXPECT_EQ(folderIdentity(link), identity);
  EXPECT_EQ(folderIdentityOfNoLink(folder), identity);
  EXPECT_NE(folderIdentity(temporary.path()), identity);
}

TEST(FolderIdentity, isThatOfFoldersOnly) {
  const TemporaryFolder temporary;
  (void)temporary.mkdir("folder");
  EXPECT_FALSE(folderIdentityOfNoLink(temporary.link("link", "folder")).has_value());
  EXPECT_FALSE(folderIdentity(temporary.write("file")).has_value());
  EXPECT_FALSE(folderIdentity(temporary.path() / "nothing").has_value());
  EXPECT_FALSE(folderIdentity(FilePath()).has_value());
}

}  // namespace pelmora::platform
