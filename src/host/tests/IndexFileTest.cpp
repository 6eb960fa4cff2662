#include "host/IndexFile.h"

#include "platform/fake/FakeUserFolders.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pelmora::host {

TEST(IndexFile, isInAFolderThatItMakes) {
  platform::TemporaryFolder home;
  platform::FakeUserFolders folders;
  folders.cachesFolders = {home.path()};
  EXPECT_EQ(indexFile(folders), home.path() / "Pelmora/Metadata.sqlite");
  EXPECT_TRUE(std::filesystem::is_directory((home.path() / "Pelmora").bytes()));
}

TEST(IndexFile, isNowhereWithoutAPlace) {
  platform::TemporaryFolder home;
  platform::FakeUserFolders folders;
  EXPECT_TRUE(indexFile(folders).empty());
  folders.cachesFolders = {home.write("file", "") / "below"};
  EXPECT_TRUE(indexFile(folders).empty());
}

}  // namespace pelmora::host
