#include "idle/ScreenSaverService.h"

#include "desktop/PendingCall.h"

#include <QDBusMessage>

#include <algorithm>
#include <utility>

namespace pelmora::idle {

namespace {

constexpr const char* kName = "org.freedesktop.ScreenSaver";
constexpr const char* kPaths[] = {"/ScreenSaver", "/org/freedesktop/ScreenSaver"};
constexpr const char* kBus = "org.freedesktop.DBus";
// Of RequestName: a desktop that starts late may take the name; and not to wait in line for it.
constexpr unsigned int kAllowReplacement = 1;
constexpr unsigned int kDoNotQueue = 4;
// Desktops that may want the name, and do not take it from others; they tell what is held.
constexpr const char* kDesktops[] = {"org.gnome.SessionManager",
                                     "org.kde.Solid.PowerManagement.PolicyAgent"};
constexpr QLatin1String kNoOwner("org.freedesktop.DBus.Error.NameHasNoOwner");
constexpr int kPatience = 2000;  // milliseconds

QDBusMessage busCall(const char* method) {
  return QDBusMessage::createMethodCall(kBus, "/org/freedesktop/DBus", kBus, method);
}

std::string shortText(const QString& text) {
  return text.left(ScreenSaverService::kLongestText).toStdString();
}

}  // namespace

ScreenSaverService::ScreenSaverService(const QDBusConnection& bus, Events events)
    : _bus(bus),
      _events(std::move(events)),
      _name(kName, bus, QDBusServiceWatcher::WatchForOwnerChange) {
  _callers.setConnection(bus);
  _callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
  connect(&_callers, &QDBusServiceWatcher::serviceUnregistered, this,
          &ScreenSaverService::dropAllOf);
  connect(&_name, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) { nameChanged(owner); });
  for (const char* path : kPaths) {
    _bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
  }
  watchForDesktops();
}

ScreenSaverService::~ScreenSaverService() {
  for (const char* path : kPaths) _bus.unregisterObject(path);
  releaseName();
}

std::string ScreenSaverService::holder() const {
  return _held.empty() ? std::string() : _held.begin()->second.what;
}

unsigned int ScreenSaverService::Inhibit(const QString& application, const QString& reason) {
  if (_held.size() >= kMostHeld) {
    if (calledFromDBus()) sendErrorReply(QDBusError::LimitsExceeded, "too many are held");
    return 0;
  }
  do {
    ++_lastCookie;
  } while (_lastCookie == 0 || _held.contains(_lastCookie));
  const QString caller = message().service();
  const bool isKnown = holds(caller);
  _held[_lastCookie] = {caller, shortText(application) + " (" + shortText(reason) + ")"};
  if (!isKnown) follow(caller);
  _events.changed();
  return _lastCookie;
}

void ScreenSaverService::UnInhibit(unsigned int cookie) {
  const auto found = _held.find(cookie);
  if (found == _held.end() || found->second.caller != message().service()) {
    sendErrorReply(QDBusError::InvalidArgs, "this is not held");
    return;
  }
  const QString caller = found->second.caller;
  _held.erase(found);
  if (!holds(caller)) _callers.removeWatchedService(caller);
  _events.changed();
}

void ScreenSaverService::SimulateUserActivity() { _events.userSimulated(); }

void ScreenSaverService::watchForDesktops() {
  _desktopNames.setConnection(_bus);
  _desktopNames.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  connect(&_desktopNames, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString& name, const QString&, const QString& owner) {
            desktopChanged(name, !owner.isEmpty());
          });
  for (const char* name : kDesktops) {
    _desktopNames.addWatchedService(name);
    _unanswered.insert(name);
  }
  for (const char* name : kDesktops) {
    QDBusMessage call = busCall("NameHasOwner");
    call << name;
    desktop::whenFinished(_bus.asyncCall(call, kPatience), this,
                          [this, name](const QDBusPendingCall& answer) {
                            // What was heard since is newer.
                            if (!_unanswered.contains(name)) return;
                            const QVariantList values = answer.reply().arguments();
                            desktopChanged(name, !values.empty() && values.constFirst().toBool());
                          });
  }
}

void ScreenSaverService::desktopChanged(const QString& name, bool isThere) {
  _unanswered.erase(name);
  isThere ? (void)_desktops.insert(name) : (void)_desktops.erase(name);
  if (!_unanswered.empty()) return;
  if (_desktops.empty()) return requestName();
  releaseName();
  dropAll();
}

void ScreenSaverService::releaseName() {
  QDBusMessage call = busCall("ReleaseName");
  call << kName;
  _bus.call(call, QDBus::NoBlock);
}

void ScreenSaverService::requestName() {
  QDBusMessage call = busCall("RequestName");
  call << kName << (kAllowReplacement | kDoNotQueue);
  _bus.asyncCall(call, kPatience);  // whose it then is, the watcher tells
}

void ScreenSaverService::nameChanged(const QString& owner) {
  if (owner.isEmpty()) {
    if (_desktops.empty() && _unanswered.empty()) requestName();
    return;
  }
  if (owner == _bus.baseService()) {
    return _events.say("Pelmora: Programs find the saver as org.freedesktop.ScreenSaver");
  }
  dropAll();  // it is a desktop's now, and so is what its programs hold
}

void ScreenSaverService::dropAll() {
  for (const auto& [cookie, held] : _held) _callers.removeWatchedService(held.caller);
  if (std::exchange(_held, {}).empty()) return;
  _events.changed();
}

void ScreenSaverService::follow(const QString& caller) {
  _callers.addWatchedService(caller);
  // It may have left before it was watched.
  QDBusMessage call = busCall("GetNameOwner");
  call << caller;
  desktop::whenFinished(_bus.asyncCall(call, kPatience), this,
                        [this, caller](const QDBusPendingCall& answer) {
                          if (answer.error().name() == kNoOwner) {
                            dropAllOf(caller);
                          }
                        });
}

void ScreenSaverService::dropAllOf(const QString& caller) {
  _callers.removeWatchedService(caller);
  if (std::erase_if(_held, [&](const auto& each) { return each.second.caller == caller; }) > 0) {
    _events.changed();
  }
}

bool ScreenSaverService::holds(const QString& caller) const {
  return std::any_of(_held.begin(), _held.end(),
                     [&](const auto& each) { return each.second.caller == caller; });
}

}  // namespace pelmora::idle
