#pragma once

#include "host/EndingSignals.h"
#include "host/GuiScheduler.h"
#include "idle/BusLink.h"
#include "idle/IdleWatch.h"
#include "idle/SaverProcess.h"
#include "idle/WaylandIdleMonitor.h"
#include "idle/XScreenSaverMonitor.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "shared/Result.h"

#include <QObject>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QDBusConnection;

namespace pelmora::host {

/// What `pelmora idle` was asked for.
struct IdleRequest {
  std::chrono::seconds delay{};
  bool notOnBattery = false;
  bool isVerbose = false;
  std::vector<std::string> saverArguments;
};

/// The session's display: the compositor, or else the X server. Connected before the ending signals
/// are blocked, as one that does not answer holds everything up.
struct IdleDisplays {
  std::unique_ptr<idle::WaylandIdleMonitor> wayland;
  std::unique_ptr<idle::XScreenSaverMonitor> x;

  /// Either, or why there is none.
  static Result<IdleDisplays> open();
};

/// One run of `pelmora idle`: finds out who tells of idleness here, connects to the buses, and
/// watches until it is ended or its display goes.
/// Thread: main. A QCoreApplication must be there, and the ending signals blocked.
class IdleRun {
 public:
  IdleRun(IdleRequest request, IdleDisplays displays, std::string program);

  /// Nothing when it was ended, or the reason why it could not go on.
  Status exec();

 private:
  void connectToSession();
  void connectToSystem();
  void addSessionInhibitors(const QDBusConnection& bus);
  void addSystemInhibitors(const QDBusConnection& bus);
  void sessionBusConnected(const QDBusConnection& bus);
  void sessionBusLost();
  void waylandIsReady(bool tellsOfIdleness);
  void lookForMutter();
  void mutterMissing();
  void follow(idle::IdleMonitor& monitor, const char* who);
  void displayLost(const std::string& why);
  void end(Status outcome);

  const IdleRequest _request;
  platform::SystemClock _clock;
  platform::SystemLog _log;
  GuiScheduler _scheduler;
  EndingSignals _endingSignals;
  idle::SaverProcess _saver;
  QObject _context;
  // Before the watch, whose inhibitors use the connections.
  std::optional<QDBusConnection> _sessionBus;
  std::unique_ptr<idle::BusLink> _sessionLink;
  std::unique_ptr<idle::BusLink> _systemLink;
  idle::IdleWatch _watch;
  // After it: they tell it of idleness.
  IdleDisplays _displays;
  std::unique_ptr<idle::IdleMonitor> _mutter;
  bool _isFollowing = false;
  bool _needsMutter = false;
  std::optional<Status> _outcome;
};

}  // namespace pelmora::host
