#include "platform/players/TrackNews.h"

#include <gtest/gtest.h>

namespace pelmora::platform::players {

namespace {

Track named(const char* name) { return {.name = name}; }

std::string nameIn(const std::optional<Notification>& notification) {
  if (!notification) return "no notification";
  const auto name = notification->userInfo.find("Name");
  return name == notification->userInfo.end() ? "no name" : *name->second.get<std::string>();
}

}  // namespace

TEST(TrackNews, tellOfAChangeWhenItHasSettled) {
  TrackNews news(0.2);
  EXPECT_EQ(news.nextDue(), std::nullopt);
  news.set(named("song"), 10);
  EXPECT_EQ(news.nextDue(), 10.2);
  EXPECT_EQ(nameIn(news.take(10.1)), "no notification");
  EXPECT_EQ(nameIn(news.take(10.2)), "song");
  EXPECT_EQ(nameIn(news.take(11)), "no notification");
}

TEST(TrackNews, tellOnceWhatComesBitByBit) {
  TrackNews news(0.2);
  news.set(named("song.mp3"), 10);
  news.set(named("song"), 10.15);
  EXPECT_EQ(nameIn(news.take(10.2)), "song");
  EXPECT_EQ(news.nextDue(), std::nullopt);
}

TEST(TrackNews, tellNothingWhereNothingCameOfIt) {
  TrackNews news(0.2);
  news.set(named("song"), 10);
  EXPECT_EQ(nameIn(news.take(11)), "song");
  news.set(std::nullopt, 12);
  news.set(named("song"), 12.1);
  EXPECT_EQ(news.nextDue(), std::nullopt);
  EXPECT_EQ(nameIn(news.take(20)), "no notification");
}

TEST(TrackNews, tellOnceThatNothingIsPlayedAnyLonger) {
  TrackNews news(0.2);
  news.set(std::nullopt, 9);
  EXPECT_EQ(nameIn(news.take(10)), "no notification");
  news.set(named("song"), 10);
  EXPECT_EQ(nameIn(news.take(11)), "song");
  news.set(std::nullopt, 12);
  EXPECT_EQ(nameIn(news.take(13)), "no name");
  news.set(std::nullopt, 14);
  EXPECT_EQ(nameIn(news.take(15)), "no notification");
}

TEST(TrackNews, tellNothingThatIsKnownAlready) {
  TrackNews news(0.2);
  news.set(named("song"), 10);
  news.told({.name = "song"});
  EXPECT_EQ(news.nextDue(), std::nullopt);
  news.set(named("song"), 10.1);
  EXPECT_EQ(nameIn(news.take(11)), "no notification");
  news.set(named("another"), 12);
  EXPECT_EQ(nameIn(news.take(13)), "another");
}

TEST(TrackNews, areNotPutOffByEverMoreChanges) {
  TrackNews news(0.2);
  for (int i = 0; i < 20; ++i) news.set(named(i % 2 ? "a" : "b"), 10 + i * 0.01);
  EXPECT_EQ(nameIn(news.take(10.2)), "a");
}

TEST(TrackNews, nameTheFieldsThatAreKnown) {
  const Notification all = playerInfo(Track{"song", "artist", "album", 60.0});
  EXPECT_EQ(all.name, "com.apple.iTunes.playerInfo");
  EXPECT_EQ(all.userInfo,
            (plist::Dictionary{
                {"Name", "song"}, {"Artist", "artist"}, {"Album", "album"}, {"Rating", 60.0}}));
  EXPECT_EQ(playerInfo(named("song")).userInfo, (plist::Dictionary{{"Name", "song"}}));
  EXPECT_TRUE(playerInfo(std::nullopt).userInfo.empty());
}

}  // namespace pelmora::platform::players
