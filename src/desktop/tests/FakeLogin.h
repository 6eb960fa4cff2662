#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <atomic>

#include <unistd.h>

namespace pelmora::desktop {

constexpr const char* kLoginPath = "/org/freedesktop/login1";
constexpr const char* kLoginManager = "org.freedesktop.login1.Manager";
constexpr const char* kLoginSession = "org.freedesktop.login1.Session";

/// A login manager with the sessions "c1" and "c2", of which the caller's is "c2". Thread: its
/// bus's; what is atomic, any.
class FakeLogin : public QDBusVirtualObject {
 public:
  static constexpr const char* kName = "org.freedesktop.login1";

  ~FakeLogin() override {
    for (const int each : _pipe) {
      if (each >= 0) close(each);
    }
  }

  void appear(QDBusConnection connection) {
    connection.registerVirtualObject(kLoginPath, this, QDBusConnection::SubPath);
    connection.interface()->registerService(kName);
  }

  [[nodiscard]] QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QVariantList arguments = message.arguments();
    if (message.member() == "Inhibit") {
      return pipe(_pipe) == 0 && connection.send(holdSleep(message));
    }
    if (message.member() == "GetSession") {
      ++askedForSessions;
      const QString id = arguments.value(0).toString();
      if (!knowsSessions || (id != "c1" && id != "c2")) return false;
      return connection.send(message.createReply(QVariant::fromValue(
          QDBusObjectPath("/org/freedesktop/login1/session/_3" + id.right(1)))));
    }
    if (message.member() == "Get" && message.path().endsWith("/auto") && knowsSessions) {
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QString("c2")))));
    }
    return false;
  }

  /// Whether nobody puts sleep off any more.
  [[nodiscard]] bool maySleep() const {
    char byte = 0;
    return read(_pipe[0], &byte, 1) == 0;
  }

  std::atomic<bool> knowsSessions = true;
  std::atomic<int> askedForSessions = 0;
  std::atomic<bool> isSleepHeld = false;

 private:
  QDBusMessage holdSleep(const QDBusMessage& message) {
    isSleepHeld =
        message.arguments().value(0) == "sleep" && message.arguments().value(3) == "delay";
    const QDBusMessage reply =
        message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(_pipe[1])));
    close(_pipe[1]);
    _pipe[1] = -1;
    return reply;
  }

  int _pipe[2] = {-1, -1};
};

}  // namespace pelmora::desktop
