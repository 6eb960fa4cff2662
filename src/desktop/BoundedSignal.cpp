#include "desktop/BoundedSignal.h"

#include "desktop/StopPace.h"

#include <QStringList>

#include <utility>

namespace pelmora::desktop {

BoundedSignal::BoundedSignal(const QDBusConnection& connection, Name name, const StopPace& pace,
                             Received received)
    : _connection(connection),
      _name(std::move(name)),
      _most(pace.heardInWindow),
      _received(std::move(received)) {
  _window.setSingleShot(true);
  _window.setInterval(pace.window);
  connect(&_window, &QTimer::timeout, this, [this] {
    _heard = 0;
    listen();
  });
  listen();
}

BoundedSignal::~BoundedSignal() { stopListening(); }

void BoundedSignal::receive(const QDBusMessage& message) {
  if (!_isListening) return;  // was on its way when listening ended
  if (!_window.isActive()) _window.start();
  if (++_heard >= _most) stopListening();
  _received(message);
}

void BoundedSignal::listen() {
  if (std::exchange(_isListening, true)) return;
  _connection.connect(_name.sender, _name.path, _name.interface, _name.member, arguments(),
                      QString(), this, SLOT(receive(QDBusMessage)));
}

void BoundedSignal::stopListening() {
  if (!std::exchange(_isListening, false)) return;
  _connection.disconnect(_name.sender, _name.path, _name.interface, _name.member, arguments(),
                         QString(), this, SLOT(receive(QDBusMessage)));
}

QStringList BoundedSignal::arguments() const {
  return _name.firstArgument.isEmpty() ? QStringList() : QStringList(_name.firstArgument);
}

}  // namespace pelmora::desktop
