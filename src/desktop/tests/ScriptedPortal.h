#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QString>
#include <QVariantMap>

namespace pelmora::desktop {

/// A portal that answers as it is told. Thread: one, with an event loop.
class ScriptedPortal : public QDBusVirtualObject {
 public:
  /// Puts it on a bus, as the desktop's.
  [[nodiscard]] bool start(QDBusConnection bus) {
    return bus.registerVirtualObject("/org/freedesktop/portal/desktop", this,
                                     QDBusConnection::SubPath) &&
           bus.registerService("org.freedesktop.portal.Desktop");
  }
  [[nodiscard]] QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == "Get") {
      connection.send(message.createReply(QVariant::fromValue(QDBusVariant(version))));
    } else if (message.member() == "Close") {
      closed = message.path();
    } else if (refuses) {
      connection.send(message.createErrorReply("org.example.No", "no"));
    } else {
      asked = message.arguments();
      const QString sender = message.service().mid(1).replace('.', '_');
      const QString token = qdbus_cast<QVariantMap>(asked[2])["handle_token"].toString();
      const QString handle = "/org/freedesktop/portal/desktop/request/" + sender + "/" + token;
      connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
      opened = handle;
      if (isUndecided) return true;
      QDBusMessage answer =
          QDBusMessage::createSignal(handle, "org.freedesktop.portal.Request", "Response");
      answer << response << results;
      connection.send(answer);
    }
    return true;
  }

  unsigned int version = 3;
  bool isUndecided = false;  // the user goes on looking
  QString opened;
  QString closed;
  bool refuses = false;
  unsigned int response = 0;
  QVariantMap results;
  QVariantList asked;
};

}  // namespace pelmora::desktop
