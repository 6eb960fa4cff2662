#include "platform/players/PlayerApplications.h"

#include "platform/players/tests/FakeTrackSource.h"

#include <gtest/gtest.h>

namespace pelmora::platform::players {

TEST(PlayerApplications, haveTheIdentifierOfTheSystemsPlayer) {
  EXPECT_EQ(playerIdentifier({11, 0}), "com.apple.Music");
  EXPECT_EQ(playerIdentifier({10, 15}), "com.apple.Music");
  EXPECT_EQ(playerIdentifier({10, 14}), "com.apple.iTunes");
}

TEST(PlayerApplications, areOneWhileThereAreAnyPlayers) {
  FakeTrackSource players;
  const PlayerApplications applications(players, {11, 0});
  const auto running = applications.runningApplications();
  ASSERT_EQ(running.size(), 1U);
  EXPECT_EQ(running.front().bundleIdentifier, "com.apple.Music");
  players.isThere = false;
  EXPECT_TRUE(applications.runningApplications().empty());
}

}  // namespace pelmora::platform::players
