#include "desktop/StopBridge.h"

#include "desktop/tests/FakeLogin.h"
#include "desktop/tests/StopFixture.h"

namespace pelmora::desktop {

class StopBridgeTest : public StopFixture {};

TEST_F(StopBridgeTest, tellsWhatIsSaidOnEitherBus) {
  std::unique_ptr<FakeLogin> login;
  runOn(other, [&](const QDBusConnection& connection) {
    login = std::make_unique<FakeLogin>();
    login->appear(connection);
  });
  SessionBus system(testBus.address(), log);
  const StopBridge bridge(bus, system, "c1", inbox, pace);
  settle();
  send(activeChanged("gnome", {false}));
  waitForTold(1);
  const QDBusMessage sleep =
      QDBusMessage::createSignal(kLoginPath, kLoginManager, "PrepareForSleep") << true;
  while (told < 2) send(sleep);
  runOn(other, [&login](const auto&) { login.reset(); });
}

TEST_F(StopBridgeTest, tellsNothingWithoutBuses) {
  SessionBus none;
  SessionBus missing("unix:path=/nonexistent/bus", log);
  { const StopBridge bridge(none, missing, "c1", inbox, pace); }
  EXPECT_EQ(told, 0);
}

TEST_F(StopBridgeTest, tellsAFewTimesASecondOfAStorm) {
  pace = {.interval = std::chrono::hours(1), .window = std::chrono::hours(1)};
  const StopBridge bridge(bus, bus, "", inbox, pace);
  settle();
  for (int i = 0; i < 3; ++i) send(activeChanged("freedesktop", {false}), 300);
  settle();
  EXPECT_EQ(told, 1);
}

}  // namespace pelmora::desktop
