#include "nowplaying/MusicPlayer.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace pelmora::nowplaying {

namespace {

class MusicPlayerTest : public testing::Test {
 protected:
  bool isRunning(platform::SystemVersion version, std::vector<std::optional<std::string>> all) {
    fakes.runningApplications.applications.clear();
    for (auto& identifier : all) {
      fakes.runningApplications.applications.push_back({std::move(identifier)});
    }
    platform::Services services = fakes.services();
    services.systemVersion = version;
    return isMusicPlayerRunning(services);
  }
  /// The script that was run.
  std::string scriptOf(platform::SystemVersion version) {
    platform::Services services = fakes.services();
    services.systemVersion = version;
    services.resourceFolder = resources.path();
    (void)runTrackScript(services);
    return fakes.scripts.executed.empty() ? "" : fakes.scripts.executed.back();
  }

  platform::TemporaryFolder resources;
  platform::FakeServices fakes;
};

}  // namespace

TEST_F(MusicPlayerTest, isMusicSince1015AndITunesBefore) {
  for (const platform::SystemVersion version :
       {platform::SystemVersion{10, 15}, {11, 0}, {26, 1}}) {
    EXPECT_TRUE(isRunning(version, {"com.apple.Music"}));
    EXPECT_FALSE(isRunning(version, {"com.apple.iTunes"}));
  }
  EXPECT_FALSE(isRunning({10, 14}, {"com.apple.Music"}));
  EXPECT_TRUE(isRunning({10, 14}, {"com.apple.iTunes"}));
}

TEST_F(MusicPlayerTest, isKnownByItsIdentifierWhateverTheCase) {
  EXPECT_TRUE(isRunning({11, 0}, {"org.other", std::nullopt, "COM.APPLE.MUSIC"}));
  EXPECT_FALSE(isRunning({11, 0}, {std::nullopt, "com.apple.Music.helper", "com.apple"}));
  EXPECT_FALSE(isRunning({11, 0}, {}));
}

TEST_F(MusicPlayerTest, isAskedByAScriptOfItsOwn) {
  resources.write("GetCurrentTrackInfo-Music.txt", "ask Music");
  resources.write("GetCurrentTrackInfo-iTunes.txt", "ask iTunes");
  EXPECT_EQ(scriptOf({11, 0}), "ask Music");
  EXPECT_EQ(scriptOf({10, 15}), "ask Music");
  EXPECT_EQ(scriptOf({10, 14}), "ask iTunes");
}

TEST_F(MusicPlayerTest, isNotAskedWithoutAScript) {
  EXPECT_EQ(scriptOf({11, 0}), "");
  resources.mkdir("GetCurrentTrackInfo-Music.txt");
  EXPECT_EQ(scriptOf({11, 0}), "");
}

}  // namespace pelmora::nowplaying
