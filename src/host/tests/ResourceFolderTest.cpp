#include "host/ResourceFolder.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pelmora::host {

TEST(ResourceFolder, isBesideTheProgramAsItIsBuilt) {
  const platform::TemporaryFolder folder;
  const FilePath data = folder.mkdir("bin/data");
  folder.mkdir("share/pelmora");
  EXPECT_EQ(resourceFolderFor(folder.path() / "bin/pelmora"), data);
}

TEST(ResourceFolder, isInTheSharedFolderAsItIsInstalled) {
  const platform::TemporaryFolder folder;
  folder.write("bin/data");  // no folder
  EXPECT_EQ(resourceFolderFor(folder.path() / "bin/pelmora"), folder.path() / "share/pelmora");
}

TEST(ResourceFolder, hasTheScriptsForTheRunningProgram) {
  for (const char* script : {"GetCurrentTrackInfo-Music.txt", "GetCurrentTrackInfo-iTunes.txt"}) {
    EXPECT_TRUE(std::filesystem::is_regular_file((resourceFolder() / script).bytes())) << script;
  }
}

}  // namespace pelmora::host
