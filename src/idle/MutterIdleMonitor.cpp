#include "idle/MutterIdleMonitor.h"

#include "desktop/PendingCall.h"

#include <utility>

namespace pelmora::idle {

namespace {

constexpr const char* kService = "org.gnome.Mutter.IdleMonitor";
constexpr const char* kPath = "/org/gnome/Mutter/IdleMonitor/Core";
constexpr const char* kInterface = "org.gnome.Mutter.IdleMonitor";
constexpr int kPatience = 5000;  // milliseconds

QDBusMessage call(const char* method) {
  QDBusMessage message = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
  message.setAutoStartService(false);
  return message;
}

unsigned int idIn(const QDBusMessage& answer) {
  const bool isId =
      answer.type() == QDBusMessage::ReplyMessage && answer.signature() == QLatin1String("u");
  return isId ? answer.arguments().constFirst().toUInt() : 0;
}

}  // namespace

MutterIdleMonitor::MutterIdleMonitor(const QDBusConnection& bus)
    : _bus(bus), _service(kService, bus, QDBusServiceWatcher::WatchForOwnerChange) {
  QObject::connect(
      &_service, &QDBusServiceWatcher::serviceOwnerChanged, &_context,
      [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
}

MutterIdleMonitor::~MutterIdleMonitor() {
  for (const unsigned int watch : {_idleWatch, _activeWatch}) {
    if (watch == 0) continue;
    QDBusMessage removal = call("RemoveWatch");
    removal << watch;
    _bus.call(removal, QDBus::NoBlock);
  }
}

void MutterIdleMonitor::look(const QDBusConnection& bus, QObject* context,
                             std::function<void(bool)> found) {
  QDBusMessage question = QDBusMessage::createMethodCall(
      "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner");
  question << kService;
  desktop::whenFinished(bus.asyncCall(question, kPatience), context,
                        [found = std::move(found)](const QDBusPendingCall& finished) {
                          const QDBusMessage answer = finished.reply();
                          found(answer.type() == QDBusMessage::ReplyMessage &&
                                answer.signature() == QLatin1String("b") &&
                                answer.arguments().constFirst().toBool());
                        });
}

void MutterIdleMonitor::start(std::chrono::seconds delay, Events events) {
  _delay = delay;
  _events = std::move(events);
  _fired.emplace(_bus, desktop::BusSignal::Name{kPath, kInterface, "WatchFired"},
                 [this](const QDBusMessage& message) { fired(message); });
  addIdleWatch();
}

void MutterIdleMonitor::addIdleWatch() {
  QDBusMessage request = call("AddIdleWatch");
  request << static_cast<qulonglong>(std::chrono::milliseconds(_delay).count());
  desktop::whenFinished(_bus.asyncCall(request, kPatience), &_context,
                        [this, generation = _generation](const QDBusPendingCall& finished) {
                          if (generation != _generation) return;
                          const QDBusMessage answer = finished.reply();
                          _idleWatch = idIn(answer);
                          _owner = answer.service();
                          if (const auto early = std::exchange(_firedBefore, std::nullopt)) {
                            fired(*early);
                          }
                        });
}

void MutterIdleMonitor::addActiveWatch() {
  desktop::whenFinished(_bus.asyncCall(call("AddUserActiveWatch"), kPatience), &_context,
                        [this, generation = _generation](const QDBusPendingCall& finished) {
                          if (generation != _generation) return;
                          _activeWatch = idIn(finished.reply());
                          if (_activeWatch == std::exchange(_early, 0)) {
                            _activeWatch = 0;  // has fired, or is none
                          }
                          // Without it nobody would tell: then rather no saver than one that stays.
                          if (_activeWatch == 0) becomeActive();
                        });
}

void MutterIdleMonitor::fired(const QDBusMessage& message) {
  if (_owner.isEmpty()) {
    _firedBefore = message;
    return;
  }
  if (message.service() != _owner) return;
  if (message.signature() != QLatin1String("u")) return;
  const unsigned int watch = message.arguments().constFirst().toUInt();
  if (watch == 0) return;
  if (watch == _idleWatch && !_isIdle) {
    _isIdle = true;
    _early = 0;
    addActiveWatch();
    _events.becameIdle();
  } else if (watch == _activeWatch) {
    _activeWatch = 0;
    becomeActive();
  } else if (_isIdle && _activeWatch == 0) {
    _early = watch;
  }
}

void MutterIdleMonitor::ownerChanged(const QString& owner) {
  ++_generation;
  _owner.clear();
  _firedBefore.reset();
  _idleWatch = 0;
  _activeWatch = 0;
  becomeActive();
  if (!owner.isEmpty() && _events.becameIdle) addIdleWatch();
}

void MutterIdleMonitor::becomeActive() {
  if (std::exchange(_isIdle, false)) _events.becameActive();
}

}  // namespace pelmora::idle
