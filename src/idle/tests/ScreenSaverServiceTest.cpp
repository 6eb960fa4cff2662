#include "idle/ScreenSaverService.h"

#include "desktop/tests/BusFixture.h"

#include <algorithm>
#include <memory>

namespace pelmora::idle {

namespace {

constexpr const char* kName = "org.freedesktop.ScreenSaver";
constexpr const char* kPath = "/org/freedesktop/ScreenSaver";

class ScreenSaverServiceTest : public desktop::BusFixture {
 protected:
  void start() {
    service = std::make_unique<ScreenSaverService>(
        bus, ScreenSaverService::Events{[this] { ++changes; }, [this] { ++simulations; },
                                        [this](const std::string& line) { said.push_back(line); }});
  }
  void startAndServe() {
    start();
    waitUntil([this] { return !said.empty(); });
  }
  /// What the service answers to a call over `from`.
  static QDBusMessage call(QDBusConnection from, const char* method, const QVariantList& arguments,
                           const char* path = kPath) {
    QDBusMessage message = QDBusMessage::createMethodCall(kName, path, kName, method);
    message.setArguments(arguments);
    return from.call(message, QDBus::BlockWithGui);
  }
  [[nodiscard]] unsigned int inhibit(const char* path = kPath) const {
    const QDBusMessage answer = call(otherBus, "Inhibit", {"Player", "a film"}, path);
    EXPECT_EQ(answer.signature(), "u");
    return answer.arguments().constFirst().toUInt();
  }
  [[nodiscard]] QString owner() const {
    QDBusMessage question = QDBusMessage::createMethodCall(
        "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetNameOwner");
    question << kName;
    const QDBusMessage answer = otherBus.call(question, QDBus::BlockWithGui);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments()[0].toString() : "";
  }

  int changes = 0;
  int simulations = 0;
  std::vector<std::string> said;
  std::unique_ptr<ScreenSaverService> service;
};

}  // namespace

TEST_F(ScreenSaverServiceTest, holdsWhatCallersAskForUntilTheyLetGo) {
  startAndServe();
  EXPECT_FALSE(service->isHeld());
  const unsigned int first = inhibit();
  const unsigned int second = inhibit("/ScreenSaver");
  EXPECT_NE(first, second);
  EXPECT_NE(first, 0U);
  EXPECT_TRUE(service->isHeld());
  EXPECT_EQ(service->holder(), "Player (a film)");
  call(otherBus, "UnInhibit", {first});
  EXPECT_TRUE(service->isHeld());
  call(otherBus, "UnInhibit", {second}, "/ScreenSaver");
  EXPECT_FALSE(service->isHeld());
  EXPECT_EQ(changes, 4);
}

TEST_F(ScreenSaverServiceTest, refusesToLetGoOfWhatTheCallerDoesNotHold) {
  startAndServe();
  const unsigned int cookie = inhibit();
  EXPECT_EQ(call(bus, "UnInhibit", {cookie}).type(), QDBusMessage::ErrorMessage);
  EXPECT_EQ(call(otherBus, "UnInhibit", {cookie + 1}).type(), QDBusMessage::ErrorMessage);
  EXPECT_EQ(call(otherBus, "Inhibit", {7}).type(), QDBusMessage::ErrorMessage);
  EXPECT_TRUE(service->isHeld());
}

TEST_F(ScreenSaverServiceTest, dropsWhatACallerHeldWhenItLeavesTheBus) {
  startAndServe();
  {
    QDBusConnection player = connect("player");
    call(player, "Inhibit", {"Player", "a film"});
    call(player, "Inhibit", {"Player", "another"});
  }
  EXPECT_TRUE(service->isHeld());
  QDBusConnection::disconnectFromBus("player");
  waitUntil([this] { return !service->isHeld(); });
}

TEST_F(ScreenSaverServiceTest, dropsWhatACallerHeldThatHasLeftAtOnce) {
  startAndServe();
  {
    QDBusConnection player = connect("player");
    QDBusMessage message = QDBusMessage::createMethodCall(kName, kPath, kName, "Inhibit");
    message << "Player"
            << "a film";
    player.call(message, QDBus::NoBlock);
    // So that it has been sent.
    QDBusMessage ping = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                       "org.freedesktop.DBus.Peer", "Ping");
    player.call(ping);
  }
  QDBusConnection::disconnectFromBus("player");
  waitUntil([this] { return changes == 2; });
  EXPECT_FALSE(service->isHeld());
}

TEST_F(ScreenSaverServiceTest, hasALimitToWhatIsHeldAndSaid) {
  startAndServe();
  call(otherBus, "Inhibit", {QString(10000, 'x'), QString(10000, 'y')});
  EXPECT_LT(service->holder().size(), 300U);
  for (std::size_t i = 1; i < ScreenSaverService::kMostHeld; ++i) EXPECT_NE(inhibit(), 0U);
  EXPECT_EQ(call(otherBus, "Inhibit", {"a", "b"}).errorName(),
            "org.freedesktop.DBus.Error.LimitsExceeded");
}

TEST_F(ScreenSaverServiceTest, tellsThatACallerSaysTheUserIsThere) {
  startAndServe();
  call(otherBus, "SimulateUserActivity", {});
  EXPECT_EQ(simulations, 1);
}

TEST_F(ScreenSaverServiceTest, leavesTheNameToADesktopUntilThatGoes) {
  other.appear(kName, kPath);
  start();
  settle();
  EXPECT_EQ(owner(), otherBus.baseService());
  EXPECT_TRUE(said.empty());
  other.disappear(kName);
  waitUntil([this] { return !said.empty(); });
  EXPECT_EQ(owner(), bus.baseService());
}

TEST_F(ScreenSaverServiceTest, letsADesktopTakeTheNameAndWithItWhatIsHeld) {
  startAndServe();
  static_cast<void>(inhibit());
  QDBusMessage request = QDBusMessage::createMethodCall(
      "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName");
  request << kName << 2U;  // replace
  otherBus.call(request, QDBus::BlockWithGui);
  waitUntil([this] { return !service->isHeld(); });
  EXPECT_EQ(owner(), otherBus.baseService());
}

TEST_F(ScreenSaverServiceTest, leavesTheNameToADesktopThatDoesNotTakeIt) {
  EXPECT_TRUE(otherBus.registerService("org.gnome.SessionManager"));
  start();
  settle();
  settle();
  EXPECT_EQ(owner(), "");
  EXPECT_TRUE(otherBus.unregisterService("org.gnome.SessionManager"));
  waitUntil([this] { return !said.empty(); });
  EXPECT_EQ(owner(), bus.baseService());
  static_cast<void>(inhibit());
  EXPECT_TRUE(service->isHeld());
  EXPECT_TRUE(otherBus.registerService("org.kde.Solid.PowerManagement.PolicyAgent"));
  waitUntil([this] { return !service->isHeld(); });
  settle();
  EXPECT_EQ(owner(), "");
  EXPECT_TRUE(otherBus.registerService(kName));
}

TEST_F(ScreenSaverServiceTest, givesTheNameUpAtItsEnd) {
  startAndServe();
  service.reset();
  settle();
  EXPECT_EQ(owner(), "");
}

}  // namespace pelmora::idle
