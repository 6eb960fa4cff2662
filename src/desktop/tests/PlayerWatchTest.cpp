#include "desktop/PlayerWatch.h"

#include "desktop/tests/PlayersFixture.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace pelmora::desktop {

class PlayerWatchTest : public PlayersFixture {
 protected:
  void watch() {
    watcher.emplace(bus, [this](const QDBusConnection& connection) {
      return std::make_unique<PlayerWatch>(
          connection, PlayerWatch::Surroundings{clock, pace, inbox, isPlayerThere});
    });
  }

  /// The fields that are told of a player that says this.
  plist::Dictionary toldOf(const QVariant& properties) {
    player.setProperties(properties);
    player.takeName(kVlc);
    watch();
    return next().userInfo;
  }

  std::shared_ptr<std::atomic<bool>> isPlayerThere = std::make_shared<std::atomic<bool>>(false);
  std::optional<OnBus<PlayerWatch>> watcher;
};

TEST_F(PlayerWatchTest, findsAPlayerThatIsThere) {
  player.setProperties(playing({{"xesam:title", "song"},
                                {"xesam:artist", QStringList({"A", "B"})},
                                {"xesam:album", "album"},
                                {"xesam:userRating", 0.4}}));
  player.takeName(kVlc);
  watch();
  const platform::Notification note = next();
  EXPECT_EQ(note.name, "com.apple.iTunes.playerInfo");
  EXPECT_EQ(note.userInfo,
            (plist::Dictionary{
                {"Name", "song"}, {"Artist", "A, B"}, {"Album", "album"}, {"Rating", 40.0}}));
  EXPECT_TRUE(*isPlayerThere);
}

TEST_F(PlayerWatchTest, seesAPlayerComeChangeAndVanish) {
  watch();
  player.setProperties(playingTitle("first"));
  player.takeName(kVlc);
  EXPECT_EQ(next("Name"), plist::Value("first"));
  player.setProperties(playingTitle("second"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("second"));
  player.setProperties(QVariantMap{{"PlaybackStatus", "Stopped"}});
  player.sayChanged();
  EXPECT_TRUE(next().userInfo.empty());
  player.setProperties(playingTitle("third"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("third"));
  player.vanish();
  EXPECT_TRUE(next().userInfo.empty());
  EXPECT_FALSE(*isPlayerThere);
}

TEST_F(PlayerWatchTest, goesOverToAnotherPlayer) {
  watch();
  player.setProperties(playingTitle("first"));
  player.takeName(kVlc);
  waitFor("first");
  ScriptedPlayer other(testBus.address(), log);
  other.setProperties(playingTitle("other"));
  other.takeName(kMpv);
  waitFor("other");
  other.vanish();
  waitFor("first");
}

TEST_F(PlayerWatchTest, followsANameThatIsTakenOver) {
  watch();
  player.setProperties(playingTitle("mine"));
  player.takeName(kVlc);
  waitFor("mine");
  ScriptedPlayer other(testBus.address(), log);
  other.setProperties(playingTitle("theirs"));
  other.takeOverName(kVlc);
  waitFor("theirs");
  const int asked = player.asked();
  player.sayChanged(100);
  other.setProperties(playingTitle("again"));
  other.sayChanged();
  waitFor("again");
  EXPECT_EQ(player.asked(), asked);
}

TEST_F(PlayerWatchTest, takesNoNoticeOfTheMirrorAndOfSecondNames) {
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  player.takeName("org.mpris.MediaPlayer2.vlc.instance7");
  ScriptedPlayer mirror(testBus.address(), log);
  mirror.setProperties(playingTitle("mirrored"));
  mirror.takeName("org.mpris.MediaPlayer2.playerctld");
  watch();
  waitFor("song");
  player.dropName(kVlc);
  player.setProperties(playingTitle("next"));
  mirror.sayChanged();
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("next"));
  EXPECT_EQ(mirror.asked(), 0);
  EXPECT_EQ(player.asked(), 2);
}

TEST_F(PlayerWatchTest, believesAnswersAndNotSignals) {
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  watch();
  waitFor("song");
  player.sayChanged();  // of a title that it does not have
  player.setProperties(playingTitle("next"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("next"));
}

TEST_F(PlayerWatchTest, asksAPlayerThatFloodsTheBusNoMoreThanItMay) {
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  watch();
  waitFor("song");
  const double start = clock.mediaTime();
  const int asked = player.asked();
  player.sayChanged(10'000);
  player.setProperties(playingTitle("next"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("next"));
  EXPECT_LE(player.asked() - asked, (clock.mediaTime() - start) / pace.interval + 1);
}

TEST_F(PlayerWatchTest, takesWrongTypesAsAbsent) {
  EXPECT_EQ(toldOf(playing({{"xesam:title", "song"},
                            {"xesam:artist", QVariant::fromValue(QDBusObjectPath("/a"))},
                            {"xesam:album", QVariantMap{{"a", "b"}}},
                            {"xesam:userRating", "0.5"},
                            {"mpris:length", QByteArray("bytes")}})),
            (plist::Dictionary{{"Name", "song"}}));
}

TEST_F(PlayerWatchTest, takesAListOfVariants) {
  EXPECT_EQ(toldOf(playing({{"xesam:title", "song"}, {"xesam:artist", QVariantList{"A", 3, "B"}}})),
            (plist::Dictionary{{"Name", "song"}, {"Artist", "A, B"}}));
}

TEST_F(PlayerWatchTest, cutsWhatIsHuge) {
  QVariantMap metadata{{"a:art", QString(3'000'000, 'x')},
                       {"xesam:title", QString(3'000'000, 'y')}};
  QVariantList artists;
  for (int i = 0; i < 5000; ++i) artists << QString(100, 'z');
  metadata["xesam:artist"] = artists;
  const plist::Dictionary fields = toldOf(playing(metadata));
  EXPECT_EQ(fields.at("Name"), plist::Value(std::string(512, 'y')));
  EXPECT_EQ(fields.at("Artist").get<std::string>()->size(), 512U);
}

TEST_F(PlayerWatchTest, endsReadingWhatHasTooMany) {
  const auto withMany = [](const QString& letter) {
    QVariantMap metadata{{"xesam:title", "song"}};
    for (int i = 0; i < 10'000; ++i) metadata[letter + QString::number(i)] = QVariantList{i};
    return playing(metadata);
  };
  EXPECT_EQ(toldOf(withMany("y")), (plist::Dictionary{{"Name", "song"}}));
  player.setProperties(withMany("a"));  // the title lies beyond the end
  player.sayChanged();
  EXPECT_TRUE(next().userInfo.empty());
}

TEST_F(PlayerWatchTest, livesWithAnswersThatAreNone) {
  watch();
  player.takeName(kVlc);
  const QVariantList answers{
      "text",       7, QVariantList{1, 2}, QStringList{"a"}, QVariant::fromValue(QDBusVariant("v")),
      QVariantMap()};
  for (const QVariant& each : answers) {
    player.setProperties(playingTitle(QString("before ") + each.typeName()));
    player.sayChanged();
    next();
    player.setProperties(each);
    player.sayChanged(10);
  }
  player.setAnswer([](const QDBusMessage& question, const QDBusConnection& connection) {
    connection.send(question.createErrorReply("org.example.No", "no"));
  });
  player.sayChanged();
  player.setProperties(playingTitle("at last"));
  player.sayChanged();
  waitFor("at last");
}

TEST_F(PlayerWatchTest, asksAgainAPlayerThatDidNotAnswerAtFirst) {
  pace.patience = 0.02;
  auto count = std::make_shared<int>(0);
  player.setAnswer([count](const QDBusMessage& question, const QDBusConnection& connection) {
    if (++*count == 3) connection.send(question.createReply(playingTitle("third time")));
  });
  player.takeName(kVlc);
  watch();
  EXPECT_EQ(next("Name"), plist::Value("third time"));
}

TEST_F(PlayerWatchTest, isNotHeldUpByAPlayerThatHangs) {
  player.setAnswer([](const QDBusMessage&, const QDBusConnection&) {});
  player.takeName(kVlc);
  watch();
  ScriptedPlayer other(testBus.address(), log);
  other.setProperties(playingTitle("other"));
  other.takeName(kMpv);
  player.sayChanged(1000);
  EXPECT_EQ(next("Name"), plist::Value("other"));
}

TEST_F(PlayerWatchTest, livesWithAPlayerThatVanishesInsteadOfAnswering) {
  watch();
  {
    ScriptedPlayer fleeting(testBus.address(), log);
    fleeting.setAnswer([](const QDBusMessage&, const QDBusConnection& connection) {
      QDBusConnection::disconnectFromBus(connection.name());
    });
    fleeting.takeName(kMpv);
    fleeting.vanish();
  }
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  EXPECT_EQ(next("Name"), plist::Value("song"));
}

TEST_F(PlayerWatchTest, forgetsThePlayersWhenTheBusGoes) {
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  watch();
  waitFor("song");
  testBus.kill();
  EXPECT_TRUE(next().userInfo.empty());
  EXPECT_FALSE(*isPlayerThere);
}

TEST_F(PlayerWatchTest, heedsOnlyWhatComesFromTheBusItself) {
  player.setProperties(playingTitle("song"));
  player.takeName(kVlc);
  watch();
  waitFor("song");
  QDBusMessage forged = QDBusMessage::createSignal("/org/freedesktop/DBus", "org.freedesktop.DBus",
                                                   "NameOwnerChanged");
  forged << kVlc << ":1.1"
         << "";
  ScriptedPlayer liar(testBus.address(), log);
  liar.send(forged);
  player.setProperties(playingTitle("next"));
  player.sayChanged();
  EXPECT_EQ(next("Name"), plist::Value("next"));
}

}  // namespace pelmora::desktop
