#include "desktop/LoginWatch.h"

#include "desktop/tests/FakeLogin.h"
#include "desktop/tests/StopFixture.h"

namespace pelmora::desktop {

class LoginWatchTest : public StopFixture {
 protected:
  ~LoginWatchTest() override {
    runOn(other, [this](const auto&) { login.reset(); });
  }

  void appear() {
    runOn(other, [this](const QDBusConnection& connection) {
      login = std::make_unique<FakeLogin>();
      login->knowsSessions = knowsSessions;
      login->appear(connection);
    });
  }
  void listen(const std::string& sessionId) {
    watch = std::make_unique<OnBus<LoginWatch>>(
        bus, [this, sessionId](const QDBusConnection& connection) {
          return std::make_unique<LoginWatch>(connection, sessionId, inbox, pace);
        });
    // Question by question, each of which is asked when the one before was answered.
    for (int i = 0; i < 12; ++i) {
      settle();
      runOn(other, [](const auto&) {});
    }
  }
  static QDBusMessage unlock(const char* path) {
    return QDBusMessage::createSignal(path, kLoginSession, "Unlock");
  }
  static QDBusMessage changed(const QVariantMap& properties) {
    return QDBusMessage::createSignal(kC2, "org.freedesktop.DBus.Properties", "PropertiesChanged")
           << kLoginSession << properties << QStringList{"LockedHint"};
  }
  static QDBusMessage prepareForSleep(const QVariant& value) {
    return QDBusMessage::createSignal(kLoginPath, kLoginManager, "PrepareForSleep") << value;
  }

  static constexpr const char* kC1 = "/org/freedesktop/login1/session/_31";
  static constexpr const char* kC2 = "/org/freedesktop/login1/session/_32";
  bool knowsSessions = true;
  std::unique_ptr<FakeLogin> login;  // on the other's thread
  std::unique_ptr<OnBus<LoginWatch>> watch;
};

TEST_F(LoginWatchTest, tellsOfItsOwnSessionAlone) {
  appear();
  listen("c1");
  send(unlock(kC2));
  settle();
  EXPECT_EQ(told, 0);
  send(unlock(kC1));
  waitForTold(1);
}

TEST_F(LoginWatchTest, asksForItsSessionWhereTheEnvironmentDoesNotSay) {
  appear();
  listen("");
  send(unlock(kC1));
  settle();
  EXPECT_EQ(told, 0);
  send(unlock(kC2));
  waitForTold(1);
}

TEST_F(LoginWatchTest, asksForItsSessionWhereTheEnvironmentIsWrong) {
  appear();
  listen("c77");
  send(unlock(kC1));
  settle();
  EXPECT_EQ(told, 0);
  send(unlock(kC2));
  waitForTold(1);
}

TEST_F(LoginWatchTest, takesAnySessionWhereItIsNotKnownWhichIsIts) {
  knowsSessions = false;
  appear();
  listen("c1");
  send(unlock(kC2));
  waitForTold(1);
}

TEST_F(LoginWatchTest, tellsThatTheSessionIsNoLongerLocked) {
  appear();
  listen("c2");
  for (const QVariant& odd : {QVariant(true), QVariant(0), QVariant("false")}) {
    send(changed({{"LockedHint", odd}}));
  }
  send(changed({{"IdleHint", false}}));
  settle();
  EXPECT_EQ(told, 0);
  send(changed({{"IdleHint", true}, {"LockedHint", false}}));
  waitForTold(1);
}

TEST_F(LoginWatchTest, tellsThatTheMachineGoesToSleep) {
  appear();
  listen("c2");
  for (const QVariant& odd : {QVariant(false), QVariant(1), QVariant("true")}) {
    send(prepareForSleep(odd));
  }
  settle();
  EXPECT_EQ(told, 0);
  send(prepareForSleep(true));
  waitForTold(1);
}

TEST_F(LoginWatchTest, putsSleepOffAsLongAsItIsThere) {
  appear();
  listen("c2");
  EXPECT_TRUE(login->isSleepHeld);
  watch.reset();
  settle();
  bool maySleep = false;
  runOn(other, [&](const auto&) { maySleep = login->maySleep(); });
  EXPECT_TRUE(maySleep);
}

TEST_F(LoginWatchTest, doesNotHearOthersThatSpeakAsTheLoginManager) {
  appear();
  listen("c2");
  SessionBus forger(testBus.address(), log);
  runOn(forger, [](const QDBusConnection& connection) {
    connection.send(unlock(kC2));
    connection.send(prepareForSleep(true));
    connection.send(changed({{"LockedHint", false}}));
  });
  settle();
  EXPECT_EQ(told, 0);
}

TEST_F(LoginWatchTest, followsALoginManagerThatComesLaterAndOneThatGoes) {
  listen("c1");
  appear();
  while (login->askedForSessions == 0) settle();
  settle();
  send(unlock(kC1));
  waitForTold(1);
  runOn(other, [](const QDBusConnection& connection) {
    connection.interface()->unregisterService(FakeLogin::kName);
  });
  settle();
  send(unlock(kC1));
  settle();
  EXPECT_EQ(told, 1);
}

}  // namespace pelmora::desktop
