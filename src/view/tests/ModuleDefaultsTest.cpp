#include "view/ModuleDefaults.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::view {

class ModuleDefaultsTest : public testing::Test {
 protected:
  [[nodiscard]] plist::Dictionary defaultSource() {
    fakes.preferences.registerDefaults(moduleDefaults(fakes.userFolders, fakes.bookmarks));
    const auto sources = fakes.preferences.arrayForKey("Sources");
    EXPECT_TRUE(sources && sources->size() == 1);
    return *sources->front().get<plist::Dictionary>();
  }

  platform::FakeServices fakes;
};

TEST_F(ModuleDefaultsTest, aFreshStoreReadsTheDefaults) {
  fakes.userFolders.picturesFolders = {FilePath("/home/ann/Pictures")};
  const plist::Dictionary source = defaultSource();
  EXPECT_EQ(fakes.preferences.integerForKey("UsePolaroid"), 1);
  EXPECT_EQ(fakes.preferences.integerForKey("ShowiTunesTrack"), 0);
  EXPECT_EQ(fakes.preferences.integerForKey("iTunesTrackType"), 1);
  EXPECT_EQ(fakes.preferences.integerForKey("NumImages"), 5);
  EXPECT_EQ(fakes.preferences.doubleForKey("Delay"), 4.0);
  EXPECT_EQ(source.at("enabled"), plist::Value(true));
  EXPECT_EQ(source.at("days").integerValue(), 127);
  EXPECT_EQ(source.at("chance").doubleValue(), 100);
  EXPECT_EQ(source.at("screens"), plist::Value(""));
  EXPECT_EQ(source.at("bookmark"),
            plist::Value(platform::FakeBookmarks::bookmarkOf(FilePath("/home/ann/Pictures"))));
}

TEST_F(ModuleDefaultsTest, aUserWithoutAPicturesFolderGetsApplications) {
  EXPECT_EQ(defaultSource().at("bookmark"),
            plist::Value(platform::FakeBookmarks::bookmarkOf(FilePath("/Applications"))));
}

TEST_F(ModuleDefaultsTest, anEntryWhoseBookmarkCannotBeMadeCarriesNone) {
  fakes.userFolders.picturesFolders = {FilePath("/gone")};
  fakes.bookmarks.failToMake(FilePath("/gone"));
  EXPECT_FALSE(defaultSource().contains("bookmark"));
}

TEST_F(ModuleDefaultsTest, defaultsAreNeverStored) {
  EXPECT_FALSE(defaultSource().empty());
  EXPECT_TRUE(fakes.preferences.storedValues().empty());
}

}  // namespace pelmora::view
