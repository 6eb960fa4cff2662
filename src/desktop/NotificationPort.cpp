#include "desktop/NotificationPort.h"

#include "desktop/BusValues.h"
#include "platform/players/TrackText.h"

#include <algorithm>
#include <utility>

namespace pelmora::desktop {

namespace {

constexpr const char* kPath = "/org/pelmora/DistributedNotificationCenter";
constexpr const char* kInterface = "org.pelmora.DistributedNotificationCenter";
constexpr const char* kSignal = "Posted";
constexpr std::size_t kMostEntries = 64;
constexpr std::size_t kLongestName = 255;

/// The values that go over the bus, each text made fit to be shown.
plist::Dictionary bounded(const plist::Dictionary& userInfo) {
  plist::Dictionary taken;
  for (const auto& [key, value] : userInfo) {
    if (taken.size() >= kMostEntries) break;
    const std::string shortKey = platform::players::trackText(key);
    if (const auto* text = value.get<std::string>()) {
      taken.emplace(shortKey, platform::players::trackText(*text));
    } else if (toBus(value).isValid()) {
      taken.emplace(shortKey, value);
    }
  }
  return taken;
}

QString objectText(const plist::Value& object) {
  const auto* text = object.get<std::string>();
  return text ? QString::fromStdString(platform::players::trackText(*text)) : QString();
}

}  // namespace

bool isNameOnBus(const std::string& name) {
  return !name.empty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), [](char each) {
           return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
                  (each >= '0' && each <= '9') || each == '.' || each == '-' || each == '_';
         });
}

NotificationPort::NotificationPort(const QDBusConnection& connection,
                                   std::shared_ptr<NotificationInbox> inbox)
    : _connection(connection), _inbox(std::move(inbox)) {}

void NotificationPort::observe(const std::string& name) {
  _connection.connect(QString(), kPath, kInterface, kSignal, {QString::fromStdString(name)},
                      QString(), this, SLOT(posted(QDBusMessage)));
}

void NotificationPort::forget(const std::string& name) {
  _connection.disconnect(QString(), kPath, kInterface, kSignal, {QString::fromStdString(name)},
                         QString(), this, SLOT(posted(QDBusMessage)));
}

void NotificationPort::send(const platform::Notification& notification) {
  QVariantMap userInfo;
  for (const auto& [key, value] : bounded(notification.userInfo)) {
    userInfo.insert(QString::fromStdString(key), toBus(value));
  }
  QDBusMessage message = QDBusMessage::createSignal(kPath, kInterface, kSignal);
  message << QString::fromStdString(notification.name) << objectText(notification.object)
          << userInfo;
  _connection.send(message);
}

void NotificationPort::posted(const QDBusMessage& message) {
  // Our own were delivered when they were posted.
  if (message.service() == _connection.baseService()) return;
  if (message.signature() != QLatin1String("ssa{sv}")) return;
  const QList<QVariant> arguments = message.arguments();
  const std::string object = objectText(fromBus(arguments[1])).toStdString();
  _inbox->put({.name = arguments[0].toString().toStdString(),
               .object = object.empty() ? plist::Value() : plist::Value(object),
               .userInfo = bounded(dictionaryFromBus(arguments[2]))});
}

}  // namespace pelmora::desktop
