#include "platform/linux/PosixFiles.h"

#include "platform/fake/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace pelmora::platform {

namespace {

using testing::EndsWith;

using Kinds = std::map<std::string, EntryKind>;

class PosixFilesTest : public testing::Test {
 protected:
  /// What a listing of `folder` shows; it must succeed.
  Kinds list(const FilePath& folder) const {
    const auto listing = files.list(folder, FinalLink::follow);
    if (!listing) throw std::runtime_error(listing.error().message);
    Kinds kinds;
    std::size_t index = 0;
    for (const std::string_view name : *(*listing)->names) {
      kinds.emplace(name, (*listing)->kinds.at(index++));
    }
    EXPECT_EQ(index, (*listing)->kinds.size());
    return kinds;
  }

  std::string listError(const FilePath& folder, FinalLink link = FinalLink::follow) const {
    const auto listing = files.list(folder, link);
    return listing.ok() ? "" : listing.error().message;
  }

  FilePath desktopLink(std::string_view name, std::string_view url) const {
    return temporary.write(name, "[Desktop Entry]\nType=Link\nURL=" + std::string(url) + "\n");
  }

  static void setDate(const FilePath& path, timespec date) {
    const timespec dates[2] = {date, date};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), dates, AT_SYMLINK_NOFOLLOW), 0);
  }

  TemporaryFolder temporary;
  PosixFiles files;
};

}  // namespace

TEST_F(PosixFilesTest, listsFilesFoldersAndAliases) {
  (void)temporary.write("file", "x");
  (void)temporary.mkdir("folder");
  (void)temporary.link("link to a folder", "folder");
  (void)temporary.link("link to a file", "file");
  (void)temporary.link("broken", "nowhere");
  EXPECT_EQ(list(temporary.path()), (Kinds{{"file", EntryKind::file},
                                           {"folder", EntryKind::folder},
                                           {"link to a folder", EntryKind::alias},
                                           {"link to a file", EntryKind::alias},
                                           {"broken", EntryKind::alias}}));
}

TEST_F(PosixFilesTest, listsTheFolderAloneAndNotWhatIsBelow) {
  (void)temporary.write("folder/below", "x");
  EXPECT_EQ(list(temporary.path()), (Kinds{{"folder", EntryKind::folder}}));
}

TEST_F(PosixFilesTest, listsAnEmptyFolder) {
  const auto listing = files.list(temporary.path(), FinalLink::refuse);
  ASSERT_TRUE(listing.ok());
  EXPECT_TRUE((*listing)->names->empty());
  EXPECT_TRUE((*listing)->kinds.empty());
}

TEST_F(PosixFilesTest, listsNamesOfAnyBytes) {
  const std::vector<std::string> names = {"a b",       "it's \"so\"",        "two\nlines",
                                          "\xE9t\xE9", "\xC3\xA9t\xC3\xA9",  "\x01\x7F\\",
                                          "-rf",       std::string(255, 'n')};
  for (const std::string& name : names) (void)temporary.write(name, "x");
  Kinds expected;
  for (const std::string& name : names) expected.emplace(name, EntryKind::file);
  EXPECT_EQ(list(temporary.path()), expected);
}

TEST_F(PosixFilesTest, listsFoldersLargerThanOneRead) {
  constexpr std::size_t kFiles = 600;  // of 255 bytes: about 170 KB of entries
  const std::string tail(251, 'n');
  for (std::size_t i = 0; i < kFiles; ++i) (void)temporary.write(std::to_string(1000 + i) + tail);
  EXPECT_EQ(list(temporary.path()).size(), kFiles);
}

TEST_F(PosixFilesTest, leavesHiddenEntriesOut) {
  (void)temporary.write(".file");
  (void)temporary.mkdir(".folder");
  (void)temporary.write("._picture.jpg");
  (void)temporary.write("picture.jpg");
  EXPECT_EQ(list(temporary.path()), (Kinds{{"picture.jpg", EntryKind::file}}));
}

TEST_F(PosixFilesTest, leavesNamesInTheHiddenListOut) {
  (void)temporary.write(".hidden", "first\nfolder\n\nlast\r\nspace \nunfinished");
  for (const char* name : {"first", "last", "space", "unfinished", "First", "a"}) {
    (void)temporary.write(name);
  }
  (void)temporary.mkdir("folder");
  (void)temporary.mkdir("other");
  EXPECT_EQ(list(temporary.path()), (Kinds{{"last", EntryKind::file},
                                           {"space", EntryKind::file},
                                           {"First", EntryKind::file},
                                           {"a", EntryKind::file},
                                           {"other", EntryKind::folder}}));
}

TEST_F(PosixFilesTest, appliesAHiddenListToItsFolderOnly) {
  (void)temporary.write(".hidden", "a\n");
  (void)temporary.write("folder/a");
  EXPECT_EQ(list(temporary.path() / "folder").size(), 1U);
}

TEST_F(PosixFilesTest, ignoresAHiddenListThatIsNoFileOrTooLarge) {
  (void)temporary.write("pipe/a");
  ASSERT_EQ(::mkfifo((temporary.path() / "pipe/.hidden").c_str(), 0600), 0);
  EXPECT_EQ(list(temporary.path() / "pipe").size(), 1U);

  (void)temporary.write("folder/.hidden/a");
  (void)temporary.write("folder/a");
  EXPECT_EQ(list(temporary.path() / "folder").size(), 1U);

  (void)temporary.write("large/a");
  const FilePath large = temporary.write("large/.hidden", "a\n");
  ASSERT_EQ(::truncate(large.c_str(), off_t{1} << 40), 0);
  EXPECT_EQ(list(temporary.path() / "large").size(), 1U);
}

TEST_F(PosixFilesTest, leavesPipesSocketsAndDevicesOut) {
  ASSERT_EQ(::mkfifo((temporary.path() / "pipe").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo((temporary.path() / "pipe.desktop").c_str(), 0600), 0);
  ASSERT_EQ(::mknod((temporary.path() / "socket").c_str(), S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(list(temporary.path()), Kinds{});
  EXPECT_EQ(list(FilePath("/dev")).count("null"), 0U);
}

TEST_F(PosixFilesTest, listsDesktopEntriesThatLinkAsAliases) {
  (void)desktopLink("link.desktop", "file:///anywhere");
  (void)desktopLink("web.desktop", "https://example.org/");
  (void)temporary.write("program.desktop", "[Desktop Entry]\nType=Application\nExec=x\n");
  (void)temporary.write("huge.desktop",
                        "[Desktop Entry]\nType=Link\nURL=file:///a\n" + std::string(70'000, '#'));
  EXPECT_EQ(list(temporary.path()), (Kinds{{"link.desktop", EntryKind::alias},
                                           {"web.desktop", EntryKind::file},
                                           {"program.desktop", EntryKind::file},
                                           {"huge.desktop", EntryKind::file}}));
}

TEST_F(PosixFilesTest, tellsTheFoldersFactsWithAListing) {
  const FilePath folder = temporary.mkdir("folder");
  setDate(folder, {1'000'000'000, 250'000'000});
  const auto listing = files.list(folder, FinalLink::refuse);
  ASSERT_TRUE(listing.ok());
  const auto facts = files.facts(folder, FinalLink::refuse);
  ASSERT_TRUE(facts.has_value());
  EXPECT_EQ((*listing)->folder.kind, EntryKind::folder);
  EXPECT_EQ((*listing)->folder.identity, facts->identity);
  EXPECT_EQ((*listing)->folder.contentModificationDate,
            ReferenceTime::fromPosix(1'000'000'000, 250'000'000));
  EXPECT_EQ(facts->contentModificationDate, (*listing)->folder.contentModificationDate);
}

TEST_F(PosixFilesTest, followsALinkToTheFolderWhenAskedTo) {
  (void)temporary.write("folder/a");
  const FilePath link = temporary.link("link", "folder");
  EXPECT_EQ(list(link).size(), 1U);
  EXPECT_EQ(listError(link, FinalLink::refuse), link.bytes() + ": Not a directory");
}

TEST_F(PosixFilesTest, refusesTheLastLinkOnly) {
  (void)temporary.write("folder/below/a");
  (void)temporary.link("link", "folder");
  EXPECT_EQ(listError(temporary.path() / "link/below", FinalLink::refuse), "");
}

TEST_F(PosixFilesTest, tellsWhyAFolderCannotBeListed) {
  const FilePath file = temporary.write("file", "x");
  EXPECT_EQ(listError(file), file.bytes() + ": Not a directory");
  const FilePath loop = temporary.link("loop", "loop");
  EXPECT_EQ(listError(loop), loop.bytes() + ": Too many levels of symbolic links");
  EXPECT_EQ(listError(temporary.link("broken", "nowhere")),
            (temporary.path() / "broken").bytes() + ": No such file or directory");
  EXPECT_THAT(listError(temporary.path() / std::string(256, 'n')),
              EndsWith(": File name too long"));
  EXPECT_THAT(listError(FilePath(std::string(5000, '/') + "a")), EndsWith(": File name too long"));
  EXPECT_THAT(listError(FilePath()), EndsWith(": No such file or directory"));
  const FilePath removed = temporary.mkdir("removed");
  ASSERT_EQ(::rmdir(removed.c_str()), 0);
  EXPECT_EQ(listError(removed), removed.bytes() + ": No such file or directory");
}

TEST_F(PosixFilesTest, doesNotWaitForAPipeInPlaceOfAFolder) {
  const FilePath pipe = temporary.path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(listError(pipe), pipe.bytes() + ": Not a directory");
}

TEST_F(PosixFilesTest, cannotListAFolderItMayNotRead) {
  const FilePath folder = temporary.mkdir("folder");
  ASSERT_EQ(::chmod(folder.c_str(), 0), 0);
  const bool mayReadAnything = ::access(folder.c_str(), R_OK) == 0;  // as root
  EXPECT_EQ(listError(folder), mayReadAnything ? "" : folder.bytes() + ": Permission denied");
}

TEST_F(PosixFilesTest, tellsFactsOfFilesFoldersAndAliases) {
  const FilePath file = temporary.write("file", "x");
  const FilePath link = temporary.link("link", "file");
  const FilePath entry = desktopLink("link.desktop", "file:///anywhere");
  EXPECT_EQ(files.facts(file, FinalLink::refuse)->kind, EntryKind::file);
  EXPECT_EQ(files.facts(temporary.path(), FinalLink::refuse)->kind, EntryKind::folder);
  EXPECT_EQ(files.facts(link, FinalLink::refuse)->kind, EntryKind::alias);
  EXPECT_EQ(files.facts(entry, FinalLink::refuse)->kind, EntryKind::alias);
  EXPECT_EQ(files.facts(link, FinalLink::follow)->kind, EntryKind::file);
  EXPECT_EQ(files.facts(link, FinalLink::follow)->identity,
            files.facts(file, FinalLink::refuse)->identity);
  EXPECT_NE(files.facts(link, FinalLink::refuse)->identity,
            files.facts(file, FinalLink::refuse)->identity);
}

TEST_F(PosixFilesTest, tellsNoFactsOfWhatIsNotThere) {
  EXPECT_FALSE(files.facts(temporary.path() / "nothing", FinalLink::refuse).has_value());
  EXPECT_FALSE(files.facts(FilePath(), FinalLink::refuse).has_value());
  const FilePath broken = temporary.link("broken", "nowhere");
  EXPECT_TRUE(files.facts(broken, FinalLink::refuse).has_value());
  EXPECT_FALSE(files.facts(broken, FinalLink::follow).has_value());
  EXPECT_FALSE(files.facts(temporary.link("loop", "loop"), FinalLink::follow).has_value());
}

TEST_F(PosixFilesTest, tellsHardLinksAreTheSameFile) {
  const FilePath file = temporary.write("file", "x");
  const FilePath other = temporary.path() / "other";
  ASSERT_EQ(::link(file.c_str(), other.c_str()), 0);
  EXPECT_EQ(files.facts(file, FinalLink::refuse)->identity,
            files.facts(other, FinalLink::refuse)->identity);
}

TEST_F(PosixFilesTest, tellsOfSubfoldersWhereTheFileSystemCountsThem) {
  const FilePath leaf = temporary.mkdir("parent/leaf");
  const FilePath file = temporary.write("parent/file");
  EXPECT_FALSE(files.facts(leaf, FinalLink::refuse)->hasSubfolders);
  EXPECT_FALSE(files.facts(file, FinalLink::refuse)->hasSubfolders);

  struct stat status {};
  ASSERT_EQ(::stat(leaf.parent().c_str(), &status), 0);
  const bool isCounted = status.st_nlink == 3;
  EXPECT_EQ(files.facts(leaf.parent(), FinalLink::refuse)->hasSubfolders, isCounted);
  EXPECT_EQ((*files.list(leaf.parent(), FinalLink::refuse))->folder.hasSubfolders, isCounted);
}

TEST_F(PosixFilesTest, tellsDatesBeforeNineteenSeventy) {
  const FilePath folder = temporary.mkdir("old");
  setDate(folder, {-5, 0});
  EXPECT_EQ(files.facts(folder, FinalLink::refuse)->contentModificationDate,
            ReferenceTime::fromPosix(-5, 0));
}

TEST_F(PosixFilesTest, resolvesSymbolicLinks) {
  const FilePath folder = temporary.mkdir("a folder/below");
  (void)temporary.link("first", "a folder/below");
  const FilePath second = temporary.link("second", "first");
  EXPECT_EQ(files.resolveAlias(second), folder);
}

TEST_F(PosixFilesTest, resolvesDesktopLinks) {
  const FilePath folder = temporary.mkdir("a folder\xE9");
  const FilePath link =
      desktopLink("link.desktop", "file://" + temporary.path().bytes() + "/a%20folder%E9");
  EXPECT_EQ(files.resolveAlias(link), folder);
}

TEST_F(PosixFilesTest, resolvesNoAliasThatLeadsNowhere) {
  EXPECT_EQ(files.resolveAlias(temporary.link("broken", "nowhere")), std::nullopt);
  EXPECT_EQ(files.resolveAlias(temporary.link("loop", "loop")), std::nullopt);
  (void)temporary.link("ping", "pong");
  EXPECT_EQ(files.resolveAlias(temporary.link("pong", "ping")), std::nullopt);
  EXPECT_EQ(files.resolveAlias(desktopLink("gone.desktop", "file:///nowhere/at/all")),
            std::nullopt);
  EXPECT_EQ(files.resolveAlias(desktopLink("remote.desktop", "file://server/")), std::nullopt);
}

TEST_F(PosixFilesTest, stopsAfterOneDesktopLink) {
  const FilePath second = desktopLink("second.desktop", "file:///");
  const FilePath first = desktopLink("first.desktop", "file://" + second.bytes());
  EXPECT_EQ(files.resolveAlias(first), second);
}

TEST_F(PosixFilesTest, resolvesAnythingElseToItself) {
  const FilePath file = temporary.write("file", "x");
  EXPECT_EQ(files.resolveAlias(file), file);
  EXPECT_EQ(files.resolveAlias(temporary.path()), temporary.path());
  EXPECT_EQ(files.resolveAlias(temporary.path() / "nothing"), temporary.path() / "nothing");
}

TEST_F(PosixFilesTest, takesFoldersWithAPackageSuffixForPackages) {
  EXPECT_EQ(files.isPackage(temporary.mkdir("Photos.photoslibrary")), true);
  EXPECT_EQ(files.isPackage(temporary.mkdir("Photos")), false);
}

TEST_F(PosixFilesTest, takesFoldersWithAnInfoPropertyListForPackages) {
  (void)temporary.write("Thing/Contents/Info.plist", "x");
  (void)temporary.mkdir("Other/Contents/Info.plist");
  EXPECT_EQ(files.isPackage(temporary.path() / "Thing"), true);
  EXPECT_EQ(files.isPackage(temporary.path() / "Other"), false);
}

TEST_F(PosixFilesTest, takesNoFileOrAliasForAPackage) {
  (void)temporary.mkdir("Real.app");
  EXPECT_EQ(files.isPackage(temporary.write("File.app", "x")), false);
  EXPECT_EQ(files.isPackage(temporary.link("Link.app", "Real.app")), false);
}

TEST_F(PosixFilesTest, cannotTellWhetherWhatIsNotThereIsAPackage) {
  EXPECT_EQ(files.isPackage(temporary.path() / "nothing"), std::nullopt);
  EXPECT_EQ(files.isPackage(temporary.path() / "Nothing.app"), std::nullopt);
  EXPECT_TRUE(files.hasPackageSuffix("Nothing.app"));
}

}  // namespace pelmora::platform
