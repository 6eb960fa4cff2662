#include "desktop/BusSignal.h"

#include <utility>

namespace pelmora::desktop {

BusSignal::Name BusSignal::endOfConnection() {
  return {"/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected"};
}

BusSignal::BusSignal(const QDBusConnection& bus, Name name,
                     std::function<void(const QDBusMessage&)> received)
    : _bus(bus), _name(std::move(name)), _received(std::move(received)) {
  _bus.connect(QString(), _name.path, _name.interface, _name.member, this,
               SLOT(receive(QDBusMessage)));
}

BusSignal::~BusSignal() {
  _bus.disconnect(QString(), _name.path, _name.interface, _name.member, this,
                  SLOT(receive(QDBusMessage)));
}

}  // namespace pelmora::desktop
