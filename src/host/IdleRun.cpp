#include "host/IdleRun.h"

#include "idle/BusInhibitor.h"
#include "idle/MutterIdleMonitor.h"
#include "idle/ScreenSaverService.h"
#include "idle/UsualInhibitors.h"
#include "platform/linux/XdgBaseFolders.h"

#include <QCoreApplication>

#include <utility>

namespace pelmora::host {

namespace {

constexpr double kPatience = 5;  // seconds, for the session to say who tells of idleness

std::string variable(const char* name) { return platform::processEnvironment()(name).value_or(""); }

platform::SystemLog::StandardError standardError(bool isVerbose) {
  using enum platform::SystemLog::StandardError;
  return isVerbose ? always : whenTerminal;
}

}  // namespace

Result<IdleDisplays> IdleDisplays::open() {
  IdleDisplays displays;
  std::string problem = "there is no display";
  if (!variable("WAYLAND_DISPLAY").empty()) {
    auto wayland = idle::WaylandIdleMonitor::open();
    if (wayland) {
      displays.wayland = std::move(*wayland);
      return displays;
    }
    problem = wayland.error().message;
  }
  if (variable("DISPLAY").empty()) return Error{problem};
  auto x = idle::XScreenSaverMonitor::open();
  if (!x) return x.error();
  displays.x = std::move(*x);
  return displays;
}

IdleRun::IdleRun(IdleRequest request, IdleDisplays displays, std::string program)
    : _request(std::move(request)),
      _log(standardError(_request.isVerbose)),
      _scheduler(_clock),
      _endingSignals([this] { end(Done{}); }),
      _saver(std::move(program), _request.saverArguments),
      _watch({_clock, _scheduler, _log, _saver}, _request.delay),
      _displays(std::move(displays)) {}

Status IdleRun::exec() {
  const auto lost = [this](const std::string& why) { displayLost(why); };
  if (_displays.wayland) {
    _displays.wayland->attach(
        {.ready = [this](bool tellsOfIdleness) { waylandIsReady(tellsOfIdleness); }, .lost = lost});
  } else {
    _displays.x->attach({_clock, _scheduler, _log, lost});
    _needsMutter = true;
  }
  _scheduler.after(kPatience, [this] {
    connectToSystem();
    if (!_isFollowing) mutterMissing();
  });
  connectToSession();
  QCoreApplication::exec();
  return _outcome.value_or(Status(Done{}));
}

void IdleRun::connectToSession() {
  const std::string session =
      desktop::sessionBusAddress(variable("DBUS_SESSION_BUS_ADDRESS"), variable("XDG_RUNTIME_DIR"));
  if (session.empty()) {
    _log.write("Pelmora: There is no session bus: what its programs hold is not seen");
    connectToSystem();
    if (_needsMutter) mutterMissing();
    return;
  }
  _sessionLink = std::make_unique<idle::BusLink>(
      session, "The session's bus", _log,
      idle::BusLink::Events{[this](const QDBusConnection& bus) { sessionBusConnected(bus); },
                            [this] { sessionBusLost(); }});
}

// After the session's: connections are made one after another, and one that hangs holds up the
// next.
void IdleRun::connectToSystem() {
  if (_systemLink) return;
  _systemLink = std::make_unique<idle::BusLink>(
      desktop::systemBusAddress(variable("DBUS_SYSTEM_BUS_ADDRESS")), "The system's bus", _log,
      idle::BusLink::Events{
          [this](const QDBusConnection& bus) { addSystemInhibitors(bus); },
          [this] { _watch.inhibitors().removeAll(idle::Inhibitors::Bus::system); }});
}

void IdleRun::sessionBusConnected(const QDBusConnection& bus) {
  _sessionBus.emplace(bus);
  addSessionInhibitors(bus);
  connectToSystem();
  if (_needsMutter) lookForMutter();
}

void IdleRun::sessionBusLost() {
  _watch.inhibitors().removeAll(idle::Inhibitors::Bus::session);
  if (_mutter) displayLost("The compositor cannot be reached any more");
}

void IdleRun::addSessionInhibitors(const QDBusConnection& bus) {
  using idle::Inhibitors;
  const auto changed = [this] { _watch.inhibitors().tellChanged(); };
  const auto say = [this](const std::string& line) { _log.write(line); };
  for (auto question : {idle::sessionManagerQuestion(), idle::powerManagementQuestion()}) {
    _watch.inhibitors().add(Inhibitors::Bus::session, std::make_unique<idle::BusInhibitor>(
                                                          bus, std::move(question), changed, say));
  }
  _watch.inhibitors().add(
      Inhibitors::Bus::session,
      std::make_unique<idle::ScreenSaverService>(
          bus, idle::ScreenSaverService::Events{changed, [this] { _watch.postpone(); }, say}));
}

void IdleRun::addSystemInhibitors(const QDBusConnection& bus) {
  const auto add = [&](idle::BusQuestion question) {
    _watch.inhibitors().add(
        idle::Inhibitors::Bus::system,
        std::make_unique<idle::BusInhibitor>(
            bus, std::move(question), [this] { _watch.inhibitors().tellChanged(); },
            [this](const std::string& line) { _log.write(line); }));
  };
  add(idle::loginManagerQuestion());
  if (_request.notOnBattery) add(idle::batteryQuestion());
}

void IdleRun::waylandIsReady(bool tellsOfIdleness) {
  if (tellsOfIdleness) return follow(*_displays.wayland, "the compositor");
  _needsMutter = true;
  if (_sessionBus) lookForMutter();
}

void IdleRun::lookForMutter() {
  idle::MutterIdleMonitor::look(*_sessionBus, &_context, [this](bool isThere) {
    if (_isFollowing) return;
    if (!isThere) return mutterMissing();
    _mutter = std::make_unique<idle::MutterIdleMonitor>(*_sessionBus);
    follow(*_mutter, "GNOME's compositor");
  });
}

void IdleRun::mutterMissing() {
  if (_isFollowing) return;
  if (_displays.x) return follow(*_displays.x, "the X server");
  // An X server beside a compositor sees but part of the input.
  end(Error{"the compositor does not tell when the user is idle"});
}

void IdleRun::follow(idle::IdleMonitor& monitor, const char* who) {
  _isFollowing = true;
  _log.print("Pelmora: Watching for %lld seconds without input, of which %s tells",
             static_cast<long long>(_request.delay.count()), who);
  _watch.follow(monitor);
}

void IdleRun::displayLost(const std::string& why) {
  _log.print("Pelmora: %s", why.c_str());
  end(Done{});
}

void IdleRun::end(Status outcome) {
  if (_outcome) return;
  _outcome = std::move(outcome);
  _watch.finish([] { QCoreApplication::quit(); });
}

}  // namespace pelmora::host
