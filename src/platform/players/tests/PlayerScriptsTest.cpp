#include "platform/players/PlayerScripts.h"

#include "platform/players/tests/FakeTrackSource.h"

#include <gtest/gtest.h>

namespace pelmora::platform::players {

namespace {

constexpr const char* kScript = "tell com.apple.Music\npnam = xesam:title\n";

bool isNothing(const ScriptResult& result) {
  return std::holds_alternative<std::monostate>(result);
}

}  // namespace

class PlayerScriptsTest : public testing::Test {
 protected:
  FakeTrackSource players;
  PlayerScripts scripts{players, {11, 0}};
};

TEST_F(PlayerScriptsTest, returnARecordOfTheTrack) {
  players.track = Track{.name = "song"};
  EXPECT_EQ(scripts.execute(kScript), ScriptResult(ScriptRecord{{"pnam", "song"}}));
  players.track = Track{.album = "album"};
  EXPECT_EQ(scripts.execute(kScript), ScriptResult(ScriptRecord{}));
}

TEST_F(PlayerScriptsTest, returnNothingWithoutATrack) {
  EXPECT_TRUE(isNothing(scripts.execute(kScript)));
  EXPECT_EQ(players.asked, 1);
}

TEST_F(PlayerScriptsTest, askOnlyTheApplicationThatTheSystemHas) {
  players.track = Track{.name = "song"};
  EXPECT_TRUE(isNothing(scripts.execute("tell com.apple.iTunes\npnam = xesam:title\n")));
  EXPECT_EQ(players.asked, 0);
  PlayerScripts older(players, {10, 14});
  EXPECT_FALSE(isNothing(older.execute("tell com.apple.iTunes\npnam = xesam:title\n")));
}

TEST_F(PlayerScriptsTest, askNobodyForWhatIsNoScript) {
  players.track = Track{.name = "song"};
  EXPECT_TRUE(isNothing(scripts.execute("")));
  EXPECT_TRUE(isNothing(scripts.execute("beep")));
  EXPECT_EQ(players.asked, 0);
}

}  // namespace pelmora::platform::players
