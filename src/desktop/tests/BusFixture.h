#pragma once

#include "desktop/tests/TestBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace pelmora::desktop {

/// A program on the bus that answers as it is told. Thread: one.
class FakeService : public QDBusVirtualObject {
 public:
  explicit FakeService(QDBusConnection bus) : _bus(std::move(bus)) {}
  ~FakeService() override {
    for (const QString& path : _paths) _bus.unregisterObject(path);
  }
  FakeService(const FakeService&) = delete;
  FakeService& operator=(const FakeService&) = delete;

  void appear(const QString& service, const QString& path) {
    _paths << path;
    _bus.registerVirtualObject(path, this);
    EXPECT_TRUE(_bus.registerService(service));
  }
  void disappear(const QString& service) { _bus.unregisterService(service); }
  void emitSignal(const QString& path, const QString& interface, const QString& name,
                  const QVariantList& arguments = {}) {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, name);
    signal.setArguments(arguments);
    _bus.send(signal);
  }

  [[nodiscard]] QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    calls.push_back(message);
    if (isSilent) return true;
    const QString member = message.member();
    if (answers.contains(member)) {
      connection.send(message.createReply(answers[member]));
    } else {
      connection.send(message.createErrorReply("org.example.No", "no"));
    }
    return true;
  }

  QMap<QString, QVariantList> answers;  // by method
  bool isSilent = false;
  std::vector<QDBusMessage> calls;

 private:
  QDBusConnection _bus;
  QStringList _paths;
};

/// A bus with two connections: ours, and that of the others.
class BusFixture : public testing::Test {
 protected:
  BusFixture() : bus(connect("ours")), otherBus(connect("theirs")), other(otherBus) {}
  ~BusFixture() override {
    QDBusConnection::disconnectFromBus("ours");
    QDBusConnection::disconnectFromBus("theirs");
  }

  [[nodiscard]] QDBusConnection connect(const char* name) const {
    return QDBusConnection::connectToBus(QString::fromStdString(testBus.address()), name);
  }
  static void waitUntil(const std::function<bool()>& holds) {
    while (!holds()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  /// Until everything that was sent before, by either, has arrived.
  void settle() {
    for (QDBusConnection each : {otherBus, bus, otherBus}) {
      QDBusMessage ping = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/",
                                                         "org.freedesktop.DBus.Peer", "Ping");
      each.call(ping, QDBus::BlockWithGui);
      QCoreApplication::processEvents();
    }
  }

  TestBus testBus;
  QDBusConnection bus;
  QDBusConnection otherBus;
  FakeService other;
};

}  // namespace pelmora::desktop
