#include "host/SampleFolders.h"

#include "platform/fake/FakeUserFolders.h"
#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::host {

class SampleFoldersTest : public testing::Test {
 protected:
  platform::TemporaryFolder folder;
  platform::FakeUserFolders user;
  platform::RecordingLog log;
  SampleFolders folders{user, folder.path() / "samples", log};
};

TEST_F(SampleFoldersTest, leavesAUserWithPicturesAlone) {
  user.picturesFolders = {folder.mkdir("Pictures")};
  folder.mkdir("Pictures/2019");
  folder.write("Pictures/2019/IMG_1.JPG", "x");
  EXPECT_EQ(folders.pictures(), user.picturesFolders);
  EXPECT_FALSE(holdsPictures(folder.path() / "samples"));
}

TEST_F(SampleFoldersTest, paintsSamplesForAUserWithoutPictures) {
  user.picturesFolders = {folder.mkdir("Pictures")};
  folder.write("Pictures/notes.txt", "x");
  testing::internal::CaptureStderr();
  EXPECT_EQ(folders.pictures(), (std::vector<FilePath>{folder.path() / "samples"}));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("sample pictures are shown"),
            std::string::npos);
  EXPECT_TRUE(holdsPictures(folder.path() / "samples"));
}

TEST_F(SampleFoldersTest, goesOnWithoutSamplesWhereTheyCannotBePainted) {
  folder.write("file", "x");
  const SampleFolders blocked(user, folder.path() / "file" / "samples", log);
  EXPECT_EQ(blocked.pictures(), user.picturesFolders);
  EXPECT_EQ(log.countContaining("Pelmora: No sample pictures could be painted in "), 1U);
}

TEST_F(SampleFoldersTest, handsThroughTheCachesFolders) {
  user.cachesFolders = {FilePath("/c")};
  EXPECT_EQ(folders.caches(), user.cachesFolders);
}

}  // namespace pelmora::host
