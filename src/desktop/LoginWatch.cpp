#include "desktop/LoginWatch.h"

#include "desktop/BusValues.h"
#include "desktop/PendingCall.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <utility>

namespace pelmora::desktop {

namespace {

constexpr const char* kLogin = "org.freedesktop.login1";
constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";
/// The caller's session; for a service of the user, the one with the user's display.
constexpr const char* kOwnSessionPath = "/org/freedesktop/login1/session/auto";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kBus = "org.freedesktop.DBus";

QDBusMessage question(const QString& to, const char* path, const char* interface,
                      const char* method) {
  QDBusMessage message = QDBusMessage::createMethodCall(to, path, interface, method);
  message.setAutoStartService(false);
  return message;
}

bool answers(const QDBusPendingCall& call, const char* signature) {
  return !call.isError() && call.reply().signature() == QLatin1String(signature);
}

/// A signal without a value, as a change of the property may be told, says nothing.
bool saysUnlocked(const QDBusMessage& signal) {
  if (signal.signature() != QLatin1String("sa{sv}as")) return false;
  const plist::Dictionary changed = dictionaryFromBus(signal.arguments()[1]);
  const auto hint = changed.find("LockedHint");
  return hint != changed.end() && hint->second == plist::Value(false);
}

}  // namespace

LoginWatch::LoginWatch(const QDBusConnection& connection, std::string sessionId,
                       std::shared_ptr<NotificationInbox> inbox, const StopPace& pace)
    : _sessionId(QString::fromStdString(sessionId)),
      _pace(pace),
      _connection(connection),
      _teller(std::move(inbox), pace),
      _watcher(kLogin, connection, QDBusServiceWatcher::WatchForOwnerChange) {
  connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString&, const QString& owner) { ownerIs(owner); });
  QDBusMessage who = question(kBus, "/org/freedesktop/DBus", kBus, "GetNameOwner");
  who << kLogin;
  whenFinished(_connection.asyncCall(who), this, [this](const auto& call) {
    if (answers(call, "s")) ownerIs(call.reply().arguments().constFirst().toString());
  });
}

void LoginWatch::ownerIs(const QString& owner) {
  if (owner == _owner) return;
  _owner = owner;
  _signals.clear();
  _sleep = {};
  if (owner.isEmpty()) return;
  listen(
      {.sender = owner, .path = kManagerPath, .interface = kManager, .member = "PrepareForSleep"},
      [this](const QDBusMessage& message) {
        if (message.signature() != QLatin1String("b")) return;
        if (message.arguments().constFirst().toBool()) _teller.stopped();
      });
  holdSleep();
  if (_sessionId.isEmpty()) return askForOwnSession();
  findSession(_sessionId);
}

void LoginWatch::holdSleep() {
  QDBusMessage call = question(_owner, kManagerPath, kManager, "Inhibit");
  call << "sleep"
       << "Pelmora"
       << "The screen saver ends in good order"
       << "delay";
  whenFinished(_connection.asyncCall(call), this, [this, owner = _owner](const auto& reply) {
    if (owner != _owner || !answers(reply, "h")) return;
    _sleep = qdbus_cast<QDBusUnixFileDescriptor>(reply.reply().arguments().constFirst());
  });
}

void LoginWatch::findSession(const QString& id) {
  QDBusMessage call = question(_owner, kManagerPath, kManager, "GetSession");
  call << id;
  whenFinished(_connection.asyncCall(call), this, [this, owner = _owner, id](const auto& reply) {
    if (owner != _owner) return;
    if (answers(reply, "o")) {
      const auto path = qdbus_cast<QDBusObjectPath>(reply.reply().arguments().constFirst());
      return listenToSession(path.path());
    }
    // The environment may be an older session's.
    if (id == _sessionId) return askForOwnSession();
    listenToSession({});
  });
}

void LoginWatch::askForOwnSession() {
  QDBusMessage call = question(_owner, kOwnSessionPath, kProperties, "Get");
  call << kSession << "Id";
  whenFinished(_connection.asyncCall(call), this, [this, owner = _owner](const auto& reply) {
    if (owner != _owner) return;
    const plist::Value id =
        answers(reply, "v") ? fromBus(reply.reply().arguments().constFirst()) : plist::Value();
    const auto* text = id.get<std::string>();
    // Where it is not known which session is ours, there is hardly more than one.
    if (!text || text->empty() || *text == _sessionId.toStdString()) return listenToSession({});
    findSession(QString::fromStdString(*text));
  });
}

void LoginWatch::listenToSession(const QString& path) {
  listen({.sender = _owner, .path = path, .interface = kSession, .member = "Unlock"},
         [this](const QDBusMessage& message) {
           if (message.signature().isEmpty()) _teller.stopped();
         });
  listen({.sender = _owner,
          .path = path,
          .interface = kProperties,
          .member = "PropertiesChanged",
          .firstArgument = kSession},
         [this](const QDBusMessage& message) {
           if (saysUnlocked(message)) _teller.stopped();
         });
}

void LoginWatch::listen(const BoundedSignal::Name& name, BoundedSignal::Received received) {
  _signals.push_back(
      std::make_unique<BoundedSignal>(_connection, name, _pace, std::move(received)));
}

}  // namespace pelmora::desktop
