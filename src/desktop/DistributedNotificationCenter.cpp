#include "desktop/DistributedNotificationCenter.h"

#include <utility>

namespace pelmora::desktop {

using platform::Notification;
using platform::NotificationCenter;

DistributedNotificationCenter::DistributedNotificationCenter(SessionBus& bus,
                                                             platform::Scheduler& scheduler)
    : _inbox(std::make_shared<NotificationInbox>(
          scheduler, [this](const Notification& each) { NotificationCenter::post(each); })),
      _port(bus, [inbox = _inbox](const QDBusConnection& connection) {
        return std::make_unique<NotificationPort>(connection, inbox);
      }) {}

DistributedNotificationCenter::~DistributedNotificationCenter() { _inbox->close(); }

NotificationCenter::Token DistributedNotificationCenter::addObserver(std::string name,
                                                                     Handler handler) {
  const Token token = NotificationCenter::addObserver(name, std::move(handler));
  if (!isNameOnBus(name)) return token;
  const std::lock_guard lock(_mutex);
  _names.emplace(token, name);
  if (++_observers[name] == 1) _port.call([name](NotificationPort& port) { port.observe(name); });
  return token;
}

void DistributedNotificationCenter::removeObserver(Token token) {
  NotificationCenter::removeObserver(token);
  const std::lock_guard lock(_mutex);
  const auto known = _names.find(token);
  if (known == _names.end()) return;
  const std::string name = known->second;
  _names.erase(known);
  if (--_observers[name] > 0) return;
  _observers.erase(name);
  _port.call([name](NotificationPort& port) { port.forget(name); });
}

void DistributedNotificationCenter::post(const Notification& notification) {
  if (isNameOnBus(notification.name)) {
    _port.call([notification](NotificationPort& port) { port.send(notification); });
  }
  NotificationCenter::post(notification);
}

}  // namespace pelmora::desktop
