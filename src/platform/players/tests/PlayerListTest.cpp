#include "platform/players/PlayerList.h"

#include <gmock/gmock.h>

namespace pelmora::platform::players {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kVlc = "org.mpris.MediaPlayer2.vlc";
constexpr const char* kMpv = "org.mpris.MediaPlayer2.mpv";

PlayerState state(Playback playback, const std::string& name) {
  return {playback, Track{.name = name}};
}

}  // namespace

class PlayerListTest : public testing::Test {
 protected:
  /// A player that is there, and answers its first question.
  void add(const std::string& name, const std::string& owner, const PlayerState& answer) {
    players.nameChanged(name, owner, now);
    tell(owner, answer);
  }

  void tell(const std::string& owner, const PlayerState& answer) {
    players.hint(owner, now);
    now += 1;
    EXPECT_THAT(players.takeDue(now), ElementsAre(owner));
    players.answered(owner, answer, now);
  }

  std::string shown() const {
    return players.track().value_or(Track{.name = "nothing"}).name.value_or("no name");
  }

  double now = 100;
  PlayerList players{PlayerPace{}};
};

TEST_F(PlayerListTest, asksAPlayerThatComes) {
  EXPECT_TRUE(players.isEmpty());
  EXPECT_EQ(players.nextDue(), std::nullopt);
  players.nameChanged(kVlc, ":1.1", now);
  EXPECT_FALSE(players.isEmpty());
  EXPECT_EQ(players.nextDue(), now + 0.2);
  EXPECT_THAT(players.takeDue(now + 0.1), IsEmpty());
  EXPECT_THAT(players.takeDue(now + 0.2), ElementsAre(":1.1"));
  EXPECT_EQ(players.nextDue(), std::nullopt);
}

TEST_F(PlayerListTest, takesNoNoticeOfOtherNamesAndOfTheMirror) {
  players.nameChanged("org.mpris.MediaPlayer2.playerctld", ":1.1", now);
  players.nameChanged("org.mpris.MediaPlayer2", ":1.2", now);
  players.nameChanged("org.example.Player", ":1.3", now);
  players.hint(":1.3", now);
  EXPECT_TRUE(players.isEmpty());
  EXPECT_EQ(players.nextDue(), std::nullopt);
}

TEST_F(PlayerListTest, countsTwoNamesOfOneProcessOnce) {
  players.nameChanged(kVlc, ":1.1", now);
  players.nameChanged("org.mpris.MediaPlayer2.vlc.instance42", ":1.1", now);
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.nameChanged(kVlc, "", now);
  EXPECT_TRUE(players.has(":1.1"));
  players.nameChanged("org.mpris.MediaPlayer2.vlc.instance42", "", now);
  EXPECT_FALSE(players.has(":1.1"));
}

TEST_F(PlayerListTest, asksNoMoreThanOnceAnIntervalWhateverAPlayerSays) {
  players.nameChanged(kVlc, ":1.1", 0);
  int asked = 0;
  for (int i = 0; i < 100'000; ++i) {  // ten seconds of 10,000 hints
    const double moment = i * 1e-4;
    players.hint(":1.1", moment);
    for (const std::string& owner : players.takeDue(moment)) {
      ++asked;
      players.answered(owner, state(Playback::playing, std::to_string(i)), moment);
    }
  }
  EXPECT_LE(asked, 50);
  EXPECT_GE(asked, 48);
}

TEST_F(PlayerListTest, asksAPlayerThatIsAskedOnlyWhenItHasAnswered) {
  players.nameChanged(kVlc, ":1.1", now);
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.hint(":1.1", now + 1);
  EXPECT_EQ(players.nextDue(), std::nullopt);
  EXPECT_THAT(players.takeDue(now + 5), IsEmpty());
  players.answered(":1.1", state(Playback::playing, "old"), now + 5);
  EXPECT_THAT(players.takeDue(now + 5), ElementsAre(":1.1"));
}

TEST_F(PlayerListTest, prefersWhoPlaysThenWhoPauses) {
  add(kVlc, ":1.1", state(Playback::paused, "paused"));
  add(kMpv, ":1.2", {Playback::stopped, std::nullopt});
  EXPECT_EQ(shown(), "paused");
  tell(":1.2", state(Playback::playing, "playing"));
  EXPECT_EQ(shown(), "playing");
  tell(":1.2", {Playback::stopped, std::nullopt});
  EXPECT_EQ(shown(), "paused");
}

TEST_F(PlayerListTest, prefersAmongEqualsWhoPlayedLast) {
  add(kVlc, ":1.1", state(Playback::playing, "first"));
  add(kMpv, ":1.2", state(Playback::playing, "second"));
  EXPECT_EQ(shown(), "second");
  tell(":1.2", state(Playback::paused, "second"));
  EXPECT_EQ(shown(), "first");
  tell(":1.1", state(Playback::paused, "first"));
  EXPECT_EQ(shown(), "first");
  tell(":1.2", state(Playback::paused, "another"));
  EXPECT_EQ(shown(), "first");
}

TEST_F(PlayerListTest, goesToAnotherWhenTheOneThatCountsVanishes) {
  add(kVlc, ":1.1", state(Playback::paused, "paused"));
  add(kMpv, ":1.2", state(Playback::playing, "playing"));
  players.nameChanged(kMpv, "", now);
  EXPECT_EQ(shown(), "paused");
  players.nameChanged(kVlc, "", now);
  EXPECT_EQ(shown(), "nothing");
  EXPECT_TRUE(players.isEmpty());
}

TEST_F(PlayerListTest, takesANameThatIsTakenOverForAnotherPlayer) {
  add(kVlc, ":1.1", state(Playback::playing, "old"));
  players.nameChanged(kVlc, ":1.2", now);
  EXPECT_FALSE(players.has(":1.1"));
  EXPECT_TRUE(players.has(":1.2"));
  EXPECT_EQ(shown(), "nothing");
  players.answered(":1.1", state(Playback::playing, "late"), now);
  EXPECT_EQ(shown(), "nothing");
}

TEST_F(PlayerListTest, asksAPlayerThatComesBackOnlyWhenItsOldAnswerIsThere) {
  players.nameChanged(kVlc, ":1.1", now);
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  for (int i = 0; i < 1000; ++i) {
    players.nameChanged(kVlc, "", now + 1);
    EXPECT_TRUE(players.isEmpty());
    players.nameChanged(kVlc, ":1.1", now + 1);
    EXPECT_THAT(players.takeDue(now + 5), IsEmpty());
  }
  players.answered(":1.1", state(Playback::playing, "t"), now + 5);
  EXPECT_THAT(players.takeDue(now + 5), ElementsAre(":1.1"));
}

TEST_F(PlayerListTest, forgetsAVanishedPlayerWithItsLastAnswer) {
  players.nameChanged(kVlc, ":1.1", now);
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.nameChanged(kVlc, "", now + 1);
  EXPECT_TRUE(players.isAsked(":1.1"));
  players.answered(":1.1", state(Playback::playing, "late"), now + 2);
  EXPECT_FALSE(players.isAsked(":1.1"));
  EXPECT_EQ(shown(), "nothing");
}

TEST_F(PlayerListTest, keepsWhatItKnowsOfAPlayerThatDoesNotAnswer) {
  add(kVlc, ":1.1", state(Playback::playing, "known"));
  players.hint(":1.1", now);
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.answered(":1.1", std::nullopt, now + 2);
  EXPECT_EQ(shown(), "known");
}

TEST_F(PlayerListTest, triesThreeTimesThenWaitsForAHint) {
  players.nameChanged(kVlc, ":1.1", now);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(players.nextDue());
    now = *players.nextDue();
    EXPECT_THAT(players.takeDue(now), ElementsAre(":1.1"));
    players.answered(":1.1", std::nullopt, now + 1);
  }
  EXPECT_EQ(players.nextDue(), std::nullopt);
  players.hint(":1.1", now + 9);
  EXPECT_THAT(players.takeDue(now + 10), ElementsAre(":1.1"));
}

TEST_F(PlayerListTest, refreshesThePlayerThatCounts) {
  EXPECT_EQ(players.refresh(now), "");
  add(kVlc, ":1.1", state(Playback::paused, "paused"));
  add(kMpv, ":1.2", state(Playback::playing, "playing"));
  EXPECT_EQ(players.refresh(now + 1), ":1.2");
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.2"));
  EXPECT_TRUE(players.isAsked(":1.2"));
  players.answered(":1.2", state(Playback::playing, "fresh"), now + 1);
  EXPECT_FALSE(players.isAsked(":1.2"));
  EXPECT_EQ(players.answeredTrack(":1.2"), (Track{.name = "fresh"}));
}

TEST_F(PlayerListTest, refreshesNoMoreThanOnceAnInterval) {
  add(kVlc, ":1.1", state(Playback::playing, "t"));
  EXPECT_EQ(players.refresh(now + 0.1), ":1.1");
  EXPECT_THAT(players.takeDue(now + 0.1), IsEmpty());
  EXPECT_EQ(players.answeredTrack(":1.1"), (Track{.name = "t"}));
}

TEST_F(PlayerListTest, doesNotRefreshOneThatHasJustFailedToAnswer) {
  add(kVlc, ":1.1", state(Playback::playing, "known"));
  EXPECT_EQ(players.refresh(now + 1), ":1.1");
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.answered(":1.1", std::nullopt, now + 2);
  EXPECT_EQ(players.refresh(now + 2.5), ":1.1");
  EXPECT_THAT(players.takeDue(now + 2.5), IsEmpty());
}

TEST_F(PlayerListTest, saysNothingFreshOfAPlayerThatDidNotAnswer) {
  add(kVlc, ":1.1", state(Playback::playing, "known"));
  EXPECT_EQ(players.refresh(now + 1), ":1.1");
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.answered(":1.1", std::nullopt, now + 2);
  EXPECT_EQ(players.answeredTrack(":1.1"), std::nullopt);
  EXPECT_EQ(players.answeredTrack(":1.9"), std::nullopt);
}

TEST_F(PlayerListTest, isToldNothingByAPlayerThatSaysItChangedAndDoesNotAnswer) {
  add(kVlc, ":1.1", state(Playback::playing, "known"));
  EXPECT_EQ(players.refresh(now + 1), ":1.1");
  EXPECT_THAT(players.takeDue(now + 1), ElementsAre(":1.1"));
  players.answered(":1.1", std::nullopt, now + 2);
  players.hint(":1.1", now + 2);
  EXPECT_EQ(players.answeredTrack(":1.1"), std::nullopt);
  EXPECT_EQ(players.refresh(now + 2), ":1.1");
  EXPECT_THAT(players.takeDue(now + 2), IsEmpty());
}

TEST_F(PlayerListTest, looksAtNoMorePlayersThanItCan) {
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(i);
    players.nameChanged("org.mpris.MediaPlayer2.p" + number, ":1." + number, now);
    players.nameChanged("org.mpris.MediaPlayer2.q" + number, ":2.0", now);
  }
  EXPECT_EQ(players.takeDue(now + 1).size(), 64U);
}

TEST_F(PlayerListTest, forgetsAllPlayersWhenTheBusIsGone) {
  add(kVlc, ":1.1", state(Playback::playing, "t"));
  players.clear();
  EXPECT_TRUE(players.isEmpty());
  EXPECT_EQ(shown(), "nothing");
}

}  // namespace pelmora::platform::players
