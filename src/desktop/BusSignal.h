#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>

namespace pelmora::desktop {

/// A signal on a bus that is listened to. From any sender: to watch for one by its name, the bus
/// would have to be waited for. So whoever hears it cannot trust it.
/// Thread: the one that made it, which has an event loop.
class BusSignal : public QObject {
  Q_OBJECT
 public:
  struct Name {
    QString path;
    QString interface;
    QString member;
  };
  /// What a connection sends to itself when the bus has gone.
  [[nodiscard]] static Name endOfConnection();

  BusSignal(const QDBusConnection& bus, Name name,
            std::function<void(const QDBusMessage&)> received);
  ~BusSignal() override;

 private Q_SLOTS:
  void receive(const QDBusMessage& message) { _received(message); }

 private:
  QDBusConnection _bus;
  const Name _name;
  const std::function<void(const QDBusMessage&)> _received;
};

}  // namespace pelmora::desktop
