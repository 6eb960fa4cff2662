#include "desktop/NotificationPort.h"

#include "desktop/tests/PlayersFixture.h"

#include <limits>

namespace pelmora::desktop {

class NotificationPortTest : public PlayersFixture {
 protected:
  static QDBusMessage posted(const QString& name) {
    return QDBusMessage::createSignal("/org/pelmora/DistributedNotificationCenter",
                                      "org.pelmora.DistributedNotificationCenter", "Posted")
           << name;
  }
  static std::unique_ptr<NotificationPort> make(const QDBusConnection& connection,
                                                std::shared_ptr<NotificationInbox> inbox) {
    return std::make_unique<NotificationPort>(connection, std::move(inbox));
  }
  /// Returns when what was asked of the port before is known to the bus.
  void settle(SessionBus& of) {
    bool done = false;
    of.post([this, &done](const QDBusConnection& connection) {
      connection.call(QDBusMessage::createMethodCall(
          "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"));
      scheduler.post([&done] { done = true; });
    });
    scheduler.runPostedUntil([&done] { return done; });
  }

  OnBus<NotificationPort> port{bus,
                               [this](const auto& connection) { return make(connection, inbox); }};
};

TEST_F(NotificationPortTest, receivesWhatOthersSend) {
  port.call([](NotificationPort& each) { each.observe("a.b"); });
  settle(bus);
  player.send(posted("a.b") << "object"
                            << QVariantMap{{"text", "t\n\u202E"}, {"number", 3}, {"truth", true}});
  const platform::Notification note = next();
  EXPECT_EQ(note.name, "a.b");
  EXPECT_EQ(note.object, plist::Value("object"));
  EXPECT_EQ(note.userInfo, (plist::Dictionary{{"number", 3}, {"text", "t"}, {"truth", true}}));
}

TEST_F(NotificationPortTest, receivesOnlyWhatIsObserved) {
  port.call([](NotificationPort& each) {
    each.observe("a");
    each.observe("b");
    each.forget("a");
  });
  settle(bus);
  player.send(posted("a") << "" << QVariantMap());
  player.send(posted("c") << "" << QVariantMap());
  player.send(posted("b") << "" << QVariantMap());
  EXPECT_EQ(next().name, "b");
}

TEST_F(NotificationPortTest, sendsToOthersAndNotToItself) {
  SessionBus otherBus(testBus.address(), log);
  OnBus<NotificationPort> other(otherBus,
                                [this](const auto& connection) { return make(connection, inbox); });
  other.call([](NotificationPort& each) { each.observe("a"); });
  port.call([](NotificationPort& each) { each.observe("a"); });
  settle(otherBus);
  settle(bus);
  port.call([](NotificationPort& each) {
    each.send({.name = "a", .object = "o", .userInfo = {{"k", 0.5}, {"left out", plist::Array{}}}});
  });
  const platform::Notification note = next();
  EXPECT_EQ(note.object, plist::Value("o"));
  EXPECT_EQ(note.userInfo, (plist::Dictionary{{"k", 0.5}}));
  settle(bus);
  settle(otherBus);
  scheduler.runPosted();
  EXPECT_TRUE(told.empty());
}

TEST_F(NotificationPortTest, boundsWhatItReceives) {
  port.call([](NotificationPort& each) { each.observe("a"); });
  settle(bus);
  QVariantMap many{{"A", QString(3'000'000, 'x')}, {"B", QVariantMap{{"in", "side"}}}};
  for (int i = 0; i < 1000; ++i) many["k" + QString::number(i)] = i;
  player.send(posted("a") << QString(5000, 'o') << many);
  const platform::Notification note = next();
  EXPECT_EQ(note.object.get<std::string>()->size(), 512U);
  EXPECT_EQ(note.userInfo.size(), 64U);
  EXPECT_EQ(note.userInfo.at("A").get<std::string>()->size(), 512U);
  EXPECT_FALSE(note.userInfo.contains("B"));
}

TEST_F(NotificationPortTest, takesNoOtherSignature) {
  port.call([](NotificationPort& each) { each.observe("a"); });
  settle(bus);
  player.send(posted("a"));
  player.send(posted("a") << 1 << QVariantMap());
  player.send(posted("a") << "" << QStringList{"x"});
  player.send(posted("a") << "" << QVariantMap() << 1);
  player.send(posted("a") << "right" << QVariantMap());
  EXPECT_EQ(next().object, plist::Value("right"));
}

TEST_F(NotificationPortTest, sendsNumbersAsTheyAre) {
  SessionBus otherBus(testBus.address(), log);
  OnBus<NotificationPort> other(otherBus,
                                [this](const auto& connection) { return make(connection, inbox); });
  other.call([](NotificationPort& each) { each.observe("a"); });
  settle(otherBus);
  const plist::Dictionary numbers{
      {"least", std::numeric_limits<std::int64_t>::min()}, {"not", false}, {"real", 0.1}};
  port.call([numbers](NotificationPort& each) {
    each.send({.name = "a", .object = {}, .userInfo = numbers});
  });
  EXPECT_EQ(next().userInfo, numbers);
}

TEST(NotificationPort, takesNamesThatABusRuleCanHold) {
  EXPECT_TRUE(isNameOnBus("com.apple.iTunes.playerInfo"));
  EXPECT_TRUE(isNameOnBus("a-b_9"));
  EXPECT_FALSE(isNameOnBus(""));
  EXPECT_FALSE(isNameOnBus("a'b"));
  EXPECT_FALSE(isNameOnBus("a,b"));
  EXPECT_FALSE(isNameOnBus("é"));
  EXPECT_FALSE(isNameOnBus(std::string(256, 'a')));
}

}  // namespace pelmora::desktop
