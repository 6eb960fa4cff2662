#include "platform/players/PlayerState.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmora::platform::players {

namespace {

plist::Dictionary playing(plist::Dictionary metadata) {
  return {{"PlaybackStatus", "Playing"}, {"Metadata", std::move(metadata)}};
}

Track trackOf(plist::Dictionary metadata) {
  return playerState(playing(std::move(metadata))).track.value_or(Track{});
}

std::optional<double> ratingOf(plist::Value rating) {
  return trackOf({{"xesam:title", "t"}, {"xesam:userRating", std::move(rating)}}).rating;
}

}  // namespace

TEST(PlayerState, tellsTheTrack) {
  const PlayerState state = playerState(playing({{"xesam:title", "Song"},
                                                 {"xesam:artist", plist::Array{"A", "B"}},
                                                 {"xesam:album", "Album"},
                                                 {"xesam:userRating", 0.8}}));
  EXPECT_EQ(state.playback, Playback::playing);
  EXPECT_EQ(state.track, (Track{"Song", "A, B", "Album", 80.0}));
}

TEST(PlayerState, knowsPlayingFromPausedAndStopped) {
  const auto playbackOf = [](plist::Value status) {
    return playerState({{"PlaybackStatus", std::move(status)}}).playback;
  };
  EXPECT_EQ(playbackOf("Playing"), Playback::playing);
  EXPECT_EQ(playbackOf("Paused"), Playback::paused);
  EXPECT_EQ(playbackOf("Stopped"), Playback::stopped);
  EXPECT_EQ(playbackOf("playing"), Playback::stopped);
  EXPECT_EQ(playbackOf(1), Playback::stopped);
  EXPECT_EQ(playerState({}).playback, Playback::stopped);
}

TEST(PlayerState, hasNoTrackWhileStopped) {
  plist::Dictionary properties = playing({{"xesam:title", "Song"}});
  properties["PlaybackStatus"] = "Stopped";
  EXPECT_EQ(playerState(properties).track, std::nullopt);
  properties["PlaybackStatus"] = "Paused";
  EXPECT_EQ(playerState(properties).track, (Track{.name = "Song"}));
}

TEST(PlayerState, hasNoTrackWhereNothingIsTold) {
  EXPECT_EQ(playerState(playing({})).track, std::nullopt);
  EXPECT_EQ(playerState(playing({{"xesam:userRating", 1.0}})).track, std::nullopt);
  EXPECT_EQ(playerState({{"PlaybackStatus", "Playing"}}).track, std::nullopt);
  EXPECT_EQ(playerState({{"PlaybackStatus", "Playing"}, {"Metadata", "text"}}).track, std::nullopt);
}

TEST(PlayerState, takesAnArtistAsOneTextOrAsSeveral) {
  EXPECT_EQ(trackOf({{"xesam:artist", "Solo"}}).artist, "Solo");
  EXPECT_EQ(trackOf({{"xesam:artist", plist::Array{"A", "", 3, "B"}}}).artist, "A, B");
  EXPECT_EQ(trackOf({{"xesam:title", "t"}, {"xesam:artist", plist::Array{}}}).artist, std::nullopt);
  const plist::Array many(64, std::string(500, 'x'));
  EXPECT_EQ(trackOf({{"xesam:artist", many}}).artist->size(), 512U);
}

TEST(PlayerState, takesWrongTypesAndEmptyTextsAsAbsent) {
  const Track track = trackOf(
      {{"xesam:title", "t"}, {"xesam:artist", 3}, {"xesam:album", plist::Dictionary{{"a", "b"}}}});
  EXPECT_EQ(track, (Track{.name = "t"}));
  EXPECT_EQ(trackOf({{"xesam:title", " \n"}, {"xesam:album", "a"}}), (Track{.album = "a"}));
}

TEST(PlayerState, takesARatingFromZeroToOne) {
  EXPECT_EQ(ratingOf(0.0), 0.0);
  EXPECT_EQ(ratingOf(1.0), 100.0);
  EXPECT_EQ(ratingOf(1), 100.0);
  EXPECT_EQ(ratingOf(0.5), 50.0);
}

TEST(PlayerState, takesAnyOtherRatingAsAbsent) {
  EXPECT_EQ(ratingOf(1.01), std::nullopt);
  EXPECT_EQ(ratingOf(-0.1), std::nullopt);
  EXPECT_EQ(ratingOf(std::nan("")), std::nullopt);
  EXPECT_EQ(ratingOf(std::numeric_limits<double>::infinity()), std::nullopt);
  EXPECT_EQ(ratingOf("0.5"), std::nullopt);
  EXPECT_EQ(ratingOf(true), std::nullopt);
}

}  // namespace pelmora::platform::players
