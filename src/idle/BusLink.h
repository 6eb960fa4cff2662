#pragma once

#include "desktop/BusSignal.h"
#include "desktop/SessionBus.h"
#include "platform/Log.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <optional>
#include <string>

namespace pelmora::idle {

/// A connection to a bus that is made without waiting, and used on main.
/// Thread: main. Errors: a bus that is not there, or goes, costs one line in the log.
class BusLink {
 public:
  struct Events {
    std::function<void(const QDBusConnection&)> connected;
    std::function<void()> lost;  // after it was connected; the connection is of no use then
  };

  /// `name` is for the log: "The session's bus". The log outlives it.
  BusLink(const std::string& address, const std::string& name, platform::Log& log, Events events);

 private:
  void take(const QDBusConnection& connection);
  void disconnected();

  const Events _events;
  bool _isLost = false;
  QObject _context;  // of what is posted here
  std::optional<desktop::BusSignal> _end;
  desktop::SessionBus _bus;
};

}  // namespace pelmora::idle
