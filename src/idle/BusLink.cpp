#include "idle/BusLink.h"

#include <chrono>
#include <utility>

namespace pelmora::idle {

namespace {

constexpr std::chrono::seconds kPatience(1);  // at the end, with a bus that does not answer

}  // namespace

BusLink::BusLink(const std::string& address, const std::string& name, platform::Log& log,
                 Events events)
    : _name(name), _log(log), _events(std::move(events)), _bus(address, log, kPatience, name) {
  _bus.post([this](const QDBusConnection& connection) {
    QMetaObject::invokeMethod(
        &_context, [this, connection] { take(connection); }, Qt::QueuedConnection);
  });
}

void BusLink::take(const QDBusConnection& connection) {
  // This one the connection sends to itself.
  _end.emplace(
      connection,
      BusSignal::Name{"/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected"},
      [this](const QDBusMessage&) { disconnected(); });
  if (!connection.isConnected()) return disconnected();
  _events.connected(connection);
}

void BusLink::disconnected() {
  if (std::exchange(_isLost, true)) return;
  _log.print("Pelmora: %s has gone", _name.c_str());
  _events.lost();
}

}  // namespace pelmora::idle
