#pragma once

#include "desktop/BoundedSignal.h"
#include "desktop/StopPace.h"
#include "desktop/StopTeller.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <memory>
#include <string>
#include <vector>

namespace pelmora::desktop {

/// Tells what the login manager says of the saver's end: the session is unlocked, or the machine
/// goes to sleep. Other users can send over the system's bus too: only what the login manager's own
/// connection sends is heard. It is asked to put sleep off, for the few seconds that it allows,
/// until this goes.
/// Thread: the system bus's. Errors: without a login manager it tells nothing.
class LoginWatch : public QObject {
 public:
  /// `sessionId` is the session's as its environment has it, or "".
  LoginWatch(const QDBusConnection& connection, std::string sessionId,
             std::shared_ptr<NotificationInbox> inbox, const StopPace& pace);

 private:
  void ownerIs(const QString& owner);
  void holdSleep();
  void findSession(const QString& id);
  void askForOwnSession();
  void listenToSession(const QString& path);
  void listen(const BoundedSignal::Name& name, BoundedSignal::Received received);

  const QString _sessionId;
  const StopPace _pace;
  QDBusConnection _connection;
  StopTeller _teller;
  QDBusServiceWatcher _watcher;
  QString _owner;  // the login manager's connection; "" while there is none
  std::vector<std::unique_ptr<BoundedSignal>> _signals;
  QDBusUnixFileDescriptor _sleep;  // as long as it is open, sleep is put off
};

}  // namespace pelmora::desktop
