#include "platform/linux/XdgUserFolders.h"

#include "platform/fake/TemporaryFolder.h"

#include <sys/stat.h>

#include <gmock/gmock.h>

#include <map>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class XdgUserFoldersTest : public testing::Test {
 protected:
  XdgUserFoldersTest() { variables["HOME"] = home.bytes(); }

  std::optional<std::string> variable(const char* name) const {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }

  TemporaryFolder temporary;
  FilePath home = temporary.mkdir("home");
  std::map<std::string, std::string> variables;
  XdgUserFolders folders{[this](const char* name) { return variable(name); }};
};

}  // namespace

TEST_F(XdgUserFoldersTest, takesPicturesInTheHomeFolderByDefault) {
  EXPECT_THAT(folders.pictures(), IsEmpty());
  const FilePath pictures = temporary.mkdir("home/Pictures");
  EXPECT_THAT(folders.pictures(), ElementsAre(pictures));
}

TEST_F(XdgUserFoldersTest, takesThePicturesFolderThatTheUserNamed) {
  (void)temporary.mkdir("home/Pictures");
  const FilePath named = temporary.mkdir("home/Bilder");
  (void)temporary.write("home/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
  EXPECT_THAT(folders.pictures(), ElementsAre(named));

  const FilePath elsewhere = temporary.mkdir("elsewhere");
  (void)temporary.write("config/user-dirs.dirs",
                        "XDG_PICTURES_DIR=\"" + elsewhere.bytes() + "\"\n");
  variables["XDG_CONFIG_HOME"] = (temporary.path() / "config").bytes();
  EXPECT_THAT(folders.pictures(), ElementsAre(elsewhere));
}

TEST_F(XdgUserFoldersTest, hasNoPicturesFolderWhenItIsSwitchedOff) {
  (void)temporary.mkdir("home/Pictures");
  (void)temporary.write("home/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/\"\n");
  EXPECT_THAT(folders.pictures(), IsEmpty());
}

TEST_F(XdgUserFoldersTest, hasNoPicturesFolderWhereThereIsNoFolder) {
  (void)temporary.mkdir("home/Pictures");
  (void)temporary.write("home/.config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/gone\"\n");
  EXPECT_THAT(folders.pictures(), IsEmpty());
  (void)temporary.write("home/gone", "a file now");
  EXPECT_THAT(folders.pictures(), IsEmpty());
}

TEST_F(XdgUserFoldersTest, followsAPicturesFolderThatIsALink) {
  (void)temporary.mkdir("large disk");
  const FilePath link = temporary.link("home/Pictures", "../large disk");
  EXPECT_THAT(folders.pictures(), ElementsAre(link));
}

TEST_F(XdgUserFoldersTest, ignoresAListOfFoldersThatCannotBeRead) {
  const FilePath pictures = temporary.mkdir("home/Pictures");
  (void)temporary.mkdir("home/.config/user-dirs.dirs");
  EXPECT_THAT(folders.pictures(), ElementsAre(pictures));
}

TEST_F(XdgUserFoldersTest, makesTheCacheFolderForTheUserAlone) {
  const ::mode_t before = ::umask(0);
  EXPECT_THAT(folders.caches(), ElementsAre(home / ".cache"));
  variables["XDG_CACHE_HOME"] = (temporary.path() / "new/and deep").bytes();
  EXPECT_THAT(folders.caches(), ElementsAre(temporary.path() / "new/and deep"));
  ::umask(before);
  for (const char* name : {"home/.cache", "new", "new/and deep"}) {
    struct stat status {};
    ASSERT_EQ(::stat((temporary.path() / name).c_str(), &status), 0) << name;
    EXPECT_EQ(status.st_mode & 0777U, 0700U) << name;
  }
}

TEST_F(XdgUserFoldersTest, takesACacheFolderThatIsThereAsItIs) {
  const FilePath folder = temporary.mkdir("home/.cache");
  ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
  EXPECT_THAT(folders.caches(), ElementsAre(folder));
  struct stat status {};
  ASSERT_EQ(::stat(folder.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0755U);
}

TEST_F(XdgUserFoldersTest, hasNoCacheFolderWhereItCannotBeMade) {
  variables["XDG_CACHE_HOME"] = (temporary.write("file") / "below").bytes();
  EXPECT_THAT(folders.caches(), IsEmpty());
  variables["XDG_CACHE_HOME"] = temporary.write("file").bytes();
  EXPECT_THAT(folders.caches(), IsEmpty());
}

TEST_F(XdgUserFoldersTest, hasNoFoldersWithoutAHomeFolder) {
  variables.clear();
  EXPECT_THAT(folders.pictures(), IsEmpty());
  EXPECT_THAT(folders.caches(), IsEmpty());
}

}  // namespace pelmora::platform
