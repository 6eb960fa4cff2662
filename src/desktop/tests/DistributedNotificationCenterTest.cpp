#include "desktop/DistributedNotificationCenter.h"

#include "desktop/tests/PlayersFixture.h"

namespace pelmora::desktop {

class DistributedNotificationCenterTest : public PlayersFixture {
 protected:
  static platform::Notification named(std::string name, plist::Value object = {}) {
    return {.name = std::move(name), .object = std::move(object), .userInfo = {}};
  }
  /// Returns when what was asked of the centers before is known to the bus.
  void settle(SessionBus& of) {
    bool done = false;
    of.post([this, &done](const QDBusConnection& connection) {
      connection.call(QDBusMessage::createMethodCall(
          "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"));
      scheduler.post([&done] { done = true; });
    });
    scheduler.runPostedUntil([&done] { return done; });
  }

  DistributedNotificationCenter center{bus, scheduler};
  SessionBus otherBus{testBus.address(), log};
  DistributedNotificationCenter other{otherBus, scheduler};
};

TEST_F(DistributedNotificationCenterTest, tellsItsOwnObserversOnceAndAtOnce) {
  int heard = 0;
  center.addObserver("a", [&heard](const auto&) { ++heard; });
  center.post(named("a"));
  EXPECT_EQ(heard, 1);
  settle(bus);
  settle(bus);
  scheduler.runPosted();
  EXPECT_EQ(heard, 1);
}

TEST_F(DistributedNotificationCenterTest, tellsTheObserversOfOthersOnMainInOrder) {
  std::string heard;
  other.addObserver("a", [&](const platform::Notification& note) {
    heard += scheduler.isMainThread() ? *note.object.get<std::string>() : "?";
  });
  settle(otherBus);
  for (const char* each : {"1", "2", "3", "4", "5"}) center.post(named("a", each));
  scheduler.runPostedUntil([&heard] { return heard.size() == 5; });
  EXPECT_EQ(heard, "12345");
}

TEST_F(DistributedNotificationCenterTest, listensAsLongAsSomebodyObserves) {
  std::string heard;
  const auto observe = [&](const char* who) {
    return other.addObserver("a", [&heard, who](const auto&) { heard += who; });
  };
  const auto first = observe("1");
  const auto second = observe("2");
  other.removeObserver(first);
  settle(otherBus);
  center.post(named("a"));
  scheduler.runPostedUntil([&heard] { return !heard.empty(); });
  EXPECT_EQ(heard, "2");
  other.removeObserver(second);
  other.removeObserver(second);
  settle(otherBus);
  center.post(named("a"));
  settle(bus);
  settle(otherBus);
  scheduler.runPosted();
  EXPECT_EQ(heard, "2");
}

TEST_F(DistributedNotificationCenterTest, keepsInTheProcessWhatIsPutIntoItsInbox) {
  std::string heard;
  center.addObserver("a", [&heard](const auto&) { heard += "center"; });
  other.addObserver("a", [&heard](const auto&) { heard += "other"; });
  settle(otherBus);
  center.inbox()->put(named("a"));
  scheduler.runPosted();
  settle(bus);
  settle(otherBus);
  scheduler.runPosted();
  EXPECT_EQ(heard, "center");
}

TEST_F(DistributedNotificationCenterTest, isACenterOfTheProcessWithoutABus) {
  SessionBus none("", log);
  DistributedNotificationCenter alone(none, scheduler);
  int heard = 0;
  const auto token = alone.addObserver("a", [&heard](const auto&) { ++heard; });
  for (int i = 0; i < 100; ++i) alone.post(named("a"));
  alone.removeObserver(token);
  alone.post(named("a"));
  EXPECT_EQ(heard, 100);
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(DistributedNotificationCenterTest, keepsOddNamesInTheProcess) {
  int heard = 0;
  center.addObserver("it's", [&heard](const auto&) { ++heard; });
  center.post(named("it's"));
  EXPECT_EQ(heard, 1);
}

TEST_F(DistributedNotificationCenterTest, canGoWhileNotificationsArrive) {
  auto leaving = std::make_unique<DistributedNotificationCenter>(otherBus, scheduler);
  int heard = 0;
  leaving->addObserver("a", [&heard](const auto&) { ++heard; });
  settle(otherBus);
  for (int i = 0; i < 1000; ++i) center.post(named("a"));
  settle(bus);
  const int heardBefore = heard;
  leaving.reset();
  settle(otherBus);
  scheduler.runPosted();
  EXPECT_EQ(heard, heardBefore);
}

}  // namespace pelmora::desktop
