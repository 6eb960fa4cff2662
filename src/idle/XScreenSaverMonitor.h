#pragma once

#include "idle/IdleMonitor.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Scheduler.h"
#include "shared/Result.h"

#include <QSocketNotifier>

#include <xcb/screensaver.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pelmora::idle {

/// An X server's own screen saver as the clock of idleness: it is set to the delay, and instead of
/// blanking the screen it tells when it goes on and off. So whoever suspends or resets it is
/// heeded. Other programs may set it at any time: theirs is kept, and the user still does not count
/// as idle before the delay. At the end it is set back, unless someone else has set it. Thread:
/// main. Errors: a server that goes is told once by `lost`.
class XScreenSaverMonitor : public IdleMonitor {
 public:
  struct Needs {
    const platform::Clock& clock;
    platform::Scheduler& scheduler;
    platform::Log& log;
    std::function<void(const std::string& why)> lost;
  };

  /// Connects to the server of the environment, and waits for it.
  static Result<std::unique_ptr<XScreenSaverMonitor>> open();
  ~XScreenSaverMonitor() override;
  XScreenSaverMonitor(const XScreenSaverMonitor&) = delete;
  XScreenSaverMonitor& operator=(const XScreenSaverMonitor&) = delete;

  /// Watches the connection, before or without `start`. They outlive it.
  void attach(Needs needs);
  void start(std::chrono::seconds delay, Events events) override;
  /// Whether the server's saver is on and the delay not yet over.
  [[nodiscard]] bool isWaiting() const { return _rest.has_value(); }

 private:
  explicit XScreenSaverMonitor(xcb_connection_t* connection) : _connection(connection) {}

  struct Settings;
  std::optional<Settings> readSettings();
  void setTimeout(const Settings& settings, std::int16_t seconds);
  void readEvents();
  void handle(const xcb_generic_event_t& event);
  void wentOn(bool isForced);
  void wentOff();
  void takeIdleTime(std::chrono::milliseconds idle);
  void readIdleTime();
  void forgetQuestion();
  void becomeIdle();
  void lose();

  xcb_connection_t* const _connection;
  xcb_window_t _root = 0;
  std::uint8_t _firstEvent = 0;
  std::optional<Needs> _needs;
  std::unique_ptr<QSocketNotifier> _notifier;
  std::chrono::seconds _delay{};
  Events _events;
  std::optional<std::int16_t> _timeoutBefore;  // seconds; what is to be restored
  std::optional<unsigned int> _ownLooks;       // the request's number, until it has succeeded
  std::optional<unsigned int> _question;       // the number of the request for the idle time
  std::optional<platform::Scheduler::TimerId> _rest;
  bool _hasStarted = false;  // it is known whether the server's saver was on at the start
  bool _isIdle = false;
  bool _isLost = false;
};

}  // namespace pelmora::idle
