#include "idle/BusLink.h"

#include <chrono>
#include <utility>

namespace pelmora::idle {

namespace {

constexpr std::chrono::seconds kPatience(1);  // at the end, with a bus that does not answer

}  // namespace

BusLink::BusLink(const std::string& address, const std::string& name, platform::Log& log,
                 Events events)
    : _events(std::move(events)), _bus(address, log, kPatience, name) {
  _bus.post([this](const QDBusConnection& connection) {
    QMetaObject::invokeMethod(
        &_context, [this, connection] { take(connection); }, Qt::QueuedConnection);
  });
}

void BusLink::take(const QDBusConnection& connection) {
  _end.emplace(connection, desktop::BusSignal::endOfConnection(),
               [this](const QDBusMessage&) { disconnected(); });
  if (!connection.isConnected()) return disconnected();
  _events.connected(connection);
}

void BusLink::disconnected() {
  if (std::exchange(_isLost, true)) return;
  _events.lost();
}

}  // namespace pelmora::idle
