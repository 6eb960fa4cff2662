#include "host/XScreenSaverEntry.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(XScreenSaverEntry, namesItsProgram) {
  EXPECT_EQ(programOf("pelmora --root"), "pelmora");
  EXPECT_EQ(programOf("\t\tpelmora\t--root"), "pelmora");
  EXPECT_EQ(programOf("- GL: \"Pelmora's pile\" /opt/bin/pelmora --root"), "pelmora");
  EXPECT_EQ(programOf("-pelmora"), "pelmora");
  EXPECT_EQ(programOf("GL:pelmora"), "pelmora");
  EXPECT_EQ(programOf("other --with pelmora"), "other");
  EXPECT_EQ(programOf("pelmora-decoder"), "pelmora-decoder");
}

TEST(XScreenSaverEntry, mayNameNoProgram) {
  for (const char* entry : {"", " ", "-", "- ", "GL:", "\"pelmora", "\"pelmora\"", "/"}) {
    EXPECT_EQ(programOf(entry), "") << entry;
  }
}

TEST(XScreenSaverEntry, isSwitchedOffByADash) {
  EXPECT_TRUE(isSwitchedOff("- GL: pelmora --root"));
  EXPECT_TRUE(isSwitchedOff("\t-pelmora"));
  EXPECT_FALSE(isSwitchedOff("pelmora -root"));
  EXPECT_FALSE(isSwitchedOff(""));
}

TEST(XScreenSaverEntry, isTheNameAloneWhereThatFindsTheProgram) {
  const platform::TemporaryFolder folder;
  const FilePath program = folder.write("bin/pelmora");
  folder.mkdir("hacks");
  folder.link("hacks/pelmora", program);
  EXPECT_EQ(*entryFor(program, {folder.path() / "none", folder.path() / "hacks"}),
            "pelmora --root");
}

TEST(XScreenSaverEntry, hasThePathWhereTheNameFindsAnotherProgramOrNone) {
  const platform::TemporaryFolder folder;
  const FilePath program = folder.write("bin/pelmora");
  folder.write("old/pelmora");
  EXPECT_EQ(*entryFor(program, {}), program.bytes() + " --root");
  EXPECT_EQ(*entryFor(program, {folder.path() / "old", folder.path() / "bin"}),
            program.bytes() + " --root");
}

TEST(XScreenSaverEntry, isRefusedForAPathThatWouldBeTakenApart) {
  for (const char* path : {"/a b/pelmora", "/a;b/pelmora", "/a\nb/pelmora", "/a\\n/pelmora"}) {
    EXPECT_FALSE(entryFor(FilePath(path), {})) << path;
  }
}

TEST(XScreenSaverEntry, isLookedForInXScreenSaversOwnFolderFirst) {
  const std::vector<FilePath> folders = programFolders("/usr/bin::relative:/bin");
  ASSERT_EQ(folders.size(), 4U);
  EXPECT_EQ(folders.front(), FilePath("/usr/libexec/xscreensaver"));
  EXPECT_EQ(folders[2], FilePath("/usr/bin"));
  EXPECT_EQ(folders[3], FilePath("/bin"));
}

}  // namespace pelmora::host
