#pragma once

#include "desktop/NotificationInbox.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <memory>
#include <string>

namespace pelmora::desktop {

/// Sends and receives notifications over the bus: the signal "Posted" of
/// "org.pelmora.DistributedNotificationCenter", with name, object and a dictionary. Only the names
/// that are observed come in. Texts, numbers and booleans go over, 64 of them at most, each text as
/// a line of 512 characters at most; the rest is left out. Any program of the session may send, so
/// what is received is as untrusted as they are. Thread: the bus's.
class NotificationPort : public QObject {
  Q_OBJECT

 public:
  NotificationPort(const QDBusConnection& connection, std::shared_ptr<NotificationInbox> inbox);

  void observe(const std::string& name);
  void forget(const std::string& name);
  void send(const platform::Notification& notification);

 private Q_SLOTS:
  void posted(const QDBusMessage& message);

 private:
  QDBusConnection _connection;
  const std::shared_ptr<NotificationInbox> _inbox;
};

/// Whether notifications of that name go over the bus: letters, digits, and ".", "-" and "_".
[[nodiscard]] bool isNameOnBus(const std::string& name);

}  // namespace pelmora::desktop
