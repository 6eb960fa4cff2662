#include "platform/linux/LinuxBookmarks.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/FolderIdentity.h"
#include "platform/linux/SystemClock.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdio>

namespace pelmora::platform {

namespace {

/// The real filesystem, seen as if the temporary folder were where a stick is mounted, so that a
/// search never leaves it.
class LinuxBookmarksTest : public testing::Test {
 protected:
  LinuxBookmarksTest() { mountStickAt("stick"); }

  void mountStickAt(const std::string& name, const std::string& type = "ext4") {
    mountInfo = "1 0 8:1 / / rw - proc proc rw\n2 1 8:2 / " + (temporary.path() / name).bytes() +
                " rw - " + type + " /dev/stick rw\n";
  }

  plist::Bytes make(const FilePath& folder) const { return bookmarks.make(folder).value(); }

  std::string resolve(const plist::Bytes& bookmark) const {
    const auto folder = bookmarks.resolve(bookmark);
    return folder.ok() ? folder->bytes() : folder.error().message;
  }

  BookmarkRecord recordOf(const FilePath& folder) const {
    return BookmarkRecord::decode(make(folder)).value();
  }

  void move(std::string_view from, std::string_view to) const {
    ASSERT_EQ(std::rename((temporary.path() / from).c_str(), (temporary.path() / to).c_str()), 0);
  }

  static std::string gone(const FilePath& folder) {
    return folder.bytes() + ": the folder is gone";
  }

  TemporaryFolder temporary;
  FilePath photos = temporary.mkdir("stick/mine/photos");
  std::string mountInfo;
  SystemClock clock;
  std::shared_ptr<CurrentMounts> mounts =
      std::make_shared<CurrentMounts>([this] { return MountTable::parse(mountInfo); });
  LinuxBookmarks bookmarks{clock, mounts, {2000, 60}};
};

}  // namespace

TEST_F(LinuxBookmarksTest, resolvesAFolderThatStayed) {
  (void)temporary.write("stick/mine/photos/a.jpg");
  EXPECT_EQ(resolve(make(photos)), photos.bytes());
}

TEST_F(LinuxBookmarksTest, resolvesAFolderWhoseContentsChanged) {
  const FilePath file = temporary.write("stick/mine/photos/a.jpg");
  const plist::Bytes bookmark = make(photos);
  ASSERT_EQ(::unlink(file.c_str()), 0);
  (void)temporary.write("stick/mine/photos/b.jpg");
  EXPECT_EQ(resolve(bookmark), photos.bytes());
}

TEST_F(LinuxBookmarksTest, resolvesALinkToAFolderAsTheLink) {
  const FilePath link = temporary.link("link", photos);
  EXPECT_EQ(resolve(make(link)), link.bytes());
}

TEST_F(LinuxBookmarksTest, takesFoldersOfAnyName) {
  const FilePath folder = temporary.mkdir("stick/a \"b\"\n\xE9" + std::string(200, 'n'));
  EXPECT_EQ(resolve(make(folder)), folder.bytes());
}

TEST_F(LinuxBookmarksTest, makesTheSameBookmarkAgain) {
  for (int i = 0; i < 40; ++i) {
    (void)temporary.write("stick/mine/photos/" + std::to_string(i) + ".jpg");
  }
  EXPECT_EQ(make(photos), make(photos));
  EXPECT_EQ(recordOf(photos).childNames.size(), BookmarkRecord::kChildNames);
}

TEST_F(LinuxBookmarksTest, findsAFolderThatWasRenamed) {
  const plist::Bytes bookmark = make(photos);
  move("stick/mine/photos", "stick/mine/pictures");
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/mine/pictures").bytes());
}

TEST_F(LinuxBookmarksTest, findsAFolderThatWasMovedDeep) {
  const plist::Bytes bookmark = make(photos);
  (void)temporary.mkdir("stick/a/b/c/d");
  move("stick/mine/photos", "stick/a/b/c/d/e");
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/a/b/c/d/e").bytes());
}

TEST_F(LinuxBookmarksTest, findsAFolderWhoseFoldersAboveWereRenamed) {
  const plist::Bytes bookmark = make(photos);
  move("stick/mine", "stick/ours");
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/ours/photos").bytes());
}

TEST_F(LinuxBookmarksTest, findsAFolderMovedOutOfAFolderThatWasRemoved) {
  const plist::Bytes bookmark = make(photos);
  move("stick/mine/photos", "stick/photos");
  ASSERT_EQ(::rmdir((temporary.path() / "stick/mine").c_str()), 0);
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/photos").bytes());
}

TEST_F(LinuxBookmarksTest, prefersTheFolderThatMovedToItsSuccessor) {
  (void)temporary.write("stick/mine/photos/a.jpg");
  const plist::Bytes bookmark = make(photos);
  move("stick/mine/photos", "stick/mine/old photos");
  (void)temporary.write("stick/mine/photos/a.jpg");
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/mine/old photos").bytes());
}

TEST_F(LinuxBookmarksTest, findsAFilesystemThatIsMountedElsewhere) {
  const plist::Bytes bookmark = make(photos);
  move("stick", "stick1");
  mountStickAt("stick1");
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick1/mine/photos").bytes());
}

TEST_F(LinuxBookmarksTest, findsAFolderInAPartOfTheFilesystem) {
  const plist::Bytes bookmark = make(photos);
  move("stick/mine", "part");
  mountInfo = "2 1 8:2 /mine " + (temporary.path() / "part").bytes() + " rw - ext4 /dev/stick rw\n";
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "part/photos").bytes());
}

TEST_F(LinuxBookmarksTest, rejectsAReusedInode) {
  const plist::Bytes bookmark = make(photos);
  BookmarkRecord record = recordOf(photos);
  ASSERT_TRUE(record.birthTime.has_value());
  move("stick/mine/photos", "stick/mine/stranger");
  record.birthTime = *record.birthTime - 1;  // as of a folder that had the inode before
  EXPECT_EQ(resolve(record.encoded()), gone(photos));
  EXPECT_EQ(resolve(bookmark), (temporary.path() / "stick/mine/stranger").bytes());
}

TEST_F(LinuxBookmarksTest, rejectsAnInodeOfAnotherFilesystem) {
  BookmarkRecord record = recordOf(photos);
  move("stick/mine/photos", "stick/mine/stranger");
  record.filesystem = {"another", 12345};
  EXPECT_EQ(resolve(record.encoded()), gone(photos));
}

TEST_F(LinuxBookmarksTest, needsHalfOfTheNamesWhereNoBirthTimeIsKept) {
  (void)temporary.write("stick/mine/photos/a.jpg");
  (void)temporary.write("stick/mine/photos/b.jpg");
  BookmarkRecord record = recordOf(photos);
  record.birthTime = std::nullopt;
  move("stick/mine/photos", "stick/moved");
  EXPECT_EQ(resolve(record.encoded()), (temporary.path() / "stick/moved").bytes());
  record.childNames = {"a.jpg", "x.jpg", "y.jpg"};
  EXPECT_EQ(resolve(record.encoded()), gone(photos));
}

TEST_F(LinuxBookmarksTest, takesAnotherFolderAtThePathWithHalfOfTheNames) {
  for (const char* name : {"a", "b", "c", "d"}) {
    (void)temporary.write("stick/mine/photos/" + std::string(name));
  }
  BookmarkRecord record = recordOf(photos);
  *record.inode += 1'000'000'000;
  ASSERT_EQ(::unlink((photos / "a").c_str()), 0);
  ASSERT_EQ(::unlink((photos / "b").c_str()), 0);
  EXPECT_EQ(resolve(record.encoded()), photos.bytes());
  ASSERT_EQ(::unlink((photos / "c").c_str()), 0);
  EXPECT_EQ(resolve(record.encoded()), gone(photos));
}

TEST_F(LinuxBookmarksTest, knowsFoldersOfUnlastingInodesByTheirFilesystemAndPath) {
  BookmarkRecord record = recordOf(photos);
  record.inode = std::nullopt;
  record.birthTime = std::nullopt;
  record.ancestorInodes.clear();
  record.childNames = {"a", "b"};
  EXPECT_EQ(resolve(record.encoded()), photos.bytes());
  move("stick/mine/photos", "stick/moved");
  EXPECT_EQ(resolve(record.encoded()), gone(photos));
}

TEST_F(LinuxBookmarksTest, resolvesADictionaryWithAPathAlone) {
  const auto pathAlone = [](const FilePath& path) {
    return plist::writeBinary(plist::Dictionary{{"path", path.bytes()}});
  };
  EXPECT_EQ(resolve(pathAlone(photos)), photos.bytes());
  const FilePath file = temporary.write("file");
  EXPECT_EQ(resolve(pathAlone(file)), gone(file));
  EXPECT_EQ(resolve(pathAlone(temporary.path() / "nothing")), gone(temporary.path() / "nothing"));
}

TEST_F(LinuxBookmarksTest, doesNotMountWhatIsMountedOnDemand) {
  const plist::Bytes bookmark = make(photos);
  mountStickAt("stick", "autofs");
  EXPECT_EQ(resolve(bookmark), gone(photos));
}

TEST_F(LinuxBookmarksTest, searchesNoNetworkFilesystem) {
  const plist::Bytes bookmark = make(photos);
  mountStickAt("stick", "nfs4");
  move("stick/mine/photos", "stick/mine/pictures");
  EXPECT_EQ(resolve(bookmark), gone(photos));
}

TEST_F(LinuxBookmarksTest, resolvesAFolderOnTheNetworkByItsServerAndPath) {
  mountStickAt("stick", "nfs4");
  (void)temporary.write("stick/mine/photos/a");
  BookmarkRecord record = recordOf(photos);
  EXPECT_EQ(record.filesystem.name, "/dev/stick");
  record.inode = std::nullopt;
  record.childNames = {"x", "y"};
  EXPECT_EQ(resolve(record.encoded()), photos.bytes());
}

TEST_F(LinuxBookmarksTest, endsASearchAtItsLimits) {
  const plist::Bytes bookmark = make(photos);
  (void)temporary.mkdir("stick/a/b/c/d");
  move("stick/mine/photos", "stick/a/b/c/d/e");
  const LinuxBookmarks hasty(clock, mounts, {2, 60});
  EXPECT_EQ(hasty.resolve(bookmark).error().message, gone(photos));
}

TEST_F(LinuxBookmarksTest, makesNoBookmarkOfWhatIsNoFolder) {
  const FilePath file = temporary.write("file");
  EXPECT_EQ(bookmarks.make(file).error().message, file.bytes() + ": Not a directory");
  EXPECT_FALSE(bookmarks.make(temporary.path() / "nothing").ok());
  EXPECT_FALSE(bookmarks.make(temporary.link("loop", "loop")).ok());
  EXPECT_FALSE(bookmarks.make(FilePath()).ok());
}

TEST_F(LinuxBookmarksTest, refusesDamagedBookmarks) {
  EXPECT_FALSE(bookmarks.resolve({}).ok());
  EXPECT_FALSE(bookmarks.resolve(plist::Bytes(1000, 0xFF)).ok());
  EXPECT_FALSE(bookmarks.resolve(plist::writeBinary(plist::Array{"/"})).ok());
}

TEST_F(LinuxBookmarksTest, worksWithTheMountsOfThisProcess) {
  const LinuxBookmarks real(clock, std::make_shared<CurrentMounts>());
  const plist::Bytes bookmark = real.make(photos).value();
  EXPECT_EQ(real.resolve(bookmark).value(), photos);
  const FilePath renamed = temporary.path() / "stick/mine/pictures";
  move("stick/mine/photos", "stick/mine/pictures");
  // With a changed root the mount that the folder is on may be unknown; nothing is searched then.
  const Result<FilePath> found = real.resolve(bookmark);
  EXPECT_EQ(found.ok(), MountTable::ofThisProcess().mountOf(renamed) != nullptr);
  if (found) {
    EXPECT_EQ(*found, renamed);
  }
}

}  // namespace pelmora::platform
