#include "platform/linux/BookmarkResolver.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/FolderIdentity.h"
#include "platform/linux/SystemClock.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

namespace {

class BookmarkResolverTest : public testing::Test {
 protected:
  std::optional<FilePath> resolve(const BookmarkRecord& record,
                                  const std::string& mountInfo) const {
    return BookmarkResolver(record, MountTable::parse(mountInfo), clock, {1000, 60}).resolve();
  }

  std::string mountLine(const FilePath& point, const std::string& root) const {
    return "2 1 8:2 " + root + " " + point.bytes() + " rw - ext4 /dev/stick rw\n";
  }

  TemporaryFolder temporary;
  FilePath folder = temporary.mkdir("disk/folder");
  SystemClock clock;
};

}  // namespace

TEST_F(BookmarkResolverTest, needsNoMountTableForAFolderThatStayed) {
  BookmarkRecord record;
  record.path = folder;
  EXPECT_EQ(resolve(record, ""), folder);
}

TEST_F(BookmarkResolverTest, doesNotTakeAFolderThatAnotherMountCovers) {
  BookmarkRecord record;
  record.path = FilePath("/gone");
  record.pathInFilesystem = FilePath("/folder");
  record.inode = folderIdentity(folder)->inode;
  record.birthTime = folderIdentity(folder)->birthTime;
  record.filesystem = filesystemIdentity(folder, nullptr);
  const std::string disk = mountLine(temporary.path() / "disk", "/");
  EXPECT_EQ(resolve(record, disk), folder);
  EXPECT_EQ(resolve(record, disk + mountLine(folder, "/other")), std::nullopt);
}

TEST_F(BookmarkResolverTest, takesAnyFolderAtThePathWhenNoNamesAreKnown) {
  BookmarkRecord record;
  record.path = folder;
  record.inode = folderIdentity(folder)->inode + 1'000'000'000;
  record.filesystem = filesystemIdentity(folder, nullptr);
  EXPECT_EQ(resolve(record, ""), folder);
}

}  // namespace pelmora::platform
