#pragma once

#include "desktop/NotificationInbox.h"
#include "desktop/SessionBus.h"
#include "desktop/StopPace.h"
#include "desktop/tests/TestBus.h"
#include "platform/SteppedTime.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace pelmora::desktop {

/// A bus with a program that says anything on it, and what is told of the saver's end. Waiting is
/// for what happens: a test for which it does not is ended by its time limit.
class StopFixture : public testing::Test {
 protected:
  using Task = std::function<void(const QDBusConnection&)>;

  /// Runs `task` on a bus's thread, and waits for it and for the bus to have taken what it sent.
  void runOn(SessionBus& which, const Task& task) {
    bool isDone = false;
    which.post([&, task](const QDBusConnection& connection) {
      task(connection);
      connection.call(QDBusMessage::createMethodCall(
          "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId"));
      scheduler.post([&isDone] { isDone = true; });
    });
    scheduler.runPostedUntil([&isDone] { return isDone; });
  }
  /// Until all that the other has sent has arrived and was worked on.
  void settle() {
    runOn(bus, [](const auto&) {});
    runOn(bus, [](const auto&) {});
  }
  static QDBusMessage activeChanged(const char* of, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(
        "/anywhere", QString("org.%1.ScreenSaver").arg(of), "ActiveChanged");
    message.setArguments(arguments);
    return message;
  }
  void send(const QDBusMessage& message, int times = 1) {
    runOn(other, [&](const QDBusConnection& connection) {
      for (int i = 0; i < times; ++i) connection.send(message);
    });
  }
  void waitForTold(int count) {
    scheduler.runPostedUntil([this, count] { return told >= count; });
  }

  TestBus testBus;
  platform::RecordingLog log;
  platform::SteppedClock stillClock;
  platform::SteppedScheduler scheduler{stillClock};
  int told = 0;  // on main
  std::shared_ptr<NotificationInbox> inbox =
      std::make_shared<NotificationInbox>(scheduler, [this](const platform::Notification& each) {
        told += each.name == "com.apple.screensaver.didstop" ? 1 : 1000;
      });
  StopPace pace{.interval = std::chrono::milliseconds(1)};
  SessionBus bus{testBus.address(), log};    // where is listened
  SessionBus other{testBus.address(), log};  // where is sent
};

}  // namespace pelmora::desktop
