#include "desktop/PlayerBridge.h"

#include "desktop/tests/PlayersFixture.h"

namespace pelmora::desktop {

using platform::players::Track;

class PlayerBridgeTest : public PlayersFixture {};

TEST_F(PlayerBridgeTest, tellsOfPlayersAndAsksThemAfresh) {
  PlayerBridge bridge(bus, clock, inbox, pace);
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  waitFor("song");
  EXPECT_TRUE(bridge.isPlayerThere());
  EXPECT_EQ(bridge.currentTrack(), (Track{.name = "song"}));
}

TEST_F(PlayerBridgeTest, asksAfreshWithoutAHint) {
  PlayerBridge bridge(bus, clock, inbox, pace);
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  waitFor("song");
  player.setProperties(playingTitle("unannounced"));
  while (bridge.currentTrack() != Track{.name = "unannounced"}) continue;  // after the interval
  // Who asked is not told of it once more.
  player.setProperties(playingTitle("announced"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("announced"));
}

TEST_F(PlayerBridgeTest, hasNothingToTellWithoutPlayers) {
  PlayerBridge bridge(bus, clock, inbox, pace);
  EXPECT_FALSE(bridge.isPlayerThere());
  EXPECT_EQ(bridge.currentTrack(), std::nullopt);
}

TEST_F(PlayerBridgeTest, hasNothingToTellWithoutABus) {
  SessionBus none("", log);
  PlayerBridge bridge(none, clock, inbox, pace);
  EXPECT_FALSE(bridge.isPlayerThere());
  EXPECT_EQ(bridge.currentTrack(), std::nullopt);
}

TEST_F(PlayerBridgeTest, waitsNoLongerThanItHasPatienceForAPlayerThatHangs) {
  pace.patience = 0.2;
  PlayerBridge bridge(bus, clock, inbox, pace);
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  waitFor("song");
  player.setAnswer([](const QDBusMessage&, const QDBusConnection&) {});
  while (bridge.currentTrack()) continue;  // within the interval it answers what it knows
  EXPECT_EQ(bridge.currentTrack(), std::nullopt);
  EXPECT_TRUE(bridge.isPlayerThere());
}

TEST_F(PlayerBridgeTest, hasNothingToTellOnceTheBusIsGone) {
  PlayerBridge bridge(bus, clock, inbox, pace);
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  waitFor("song");
  testBus.kill();
  EXPECT_TRUE(next().userInfo.empty());
  EXPECT_EQ(bridge.currentTrack(), std::nullopt);
}

}  // namespace pelmora::desktop
