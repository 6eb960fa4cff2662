#pragma once

#include "idle/IdleMonitor.h"
#include "idle/IdlePolicy.h"
#include "idle/Inhibitors.h"
#include "idle/Saver.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Scheduler.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace pelmora::idle {

/// Starts the saver when the user is idle and ends it on activity, as `IdlePolicy` decides.
/// Thread: main. Units: seconds.
class IdleWatch {
 public:
  /// They outlive it.
  struct Needs {
    const platform::Clock& clock;
    platform::Scheduler& scheduler;
    platform::Log& log;
    Saver& saver;
  };

  /// How long a saver may take to end before it is killed.
  static constexpr double kPatience = 5;

  IdleWatch(const Needs& needs, std::chrono::seconds delay);
  ~IdleWatch();
  IdleWatch(const IdleWatch&) = delete;
  IdleWatch& operator=(const IdleWatch&) = delete;

  [[nodiscard]] Inhibitors& inhibitors() { return _inhibitors; }
  /// Follows the monitor from now on. Once; the monitor is gone before this, or never calls again.
  void follow(IdleMonitor& monitor);
  /// The delay counts anew, as if an inhibitor had just gone.
  void postpone();
  /// Ends the saver, then calls `ended`; nothing is started any more.
  void finish(std::function<void()> ended);

 private:
  void act(IdlePolicy::Action action);
  void inhibitionChanged();
  void startSaver();
  void stopSaver();
  void saverEnded(const std::string& how);
  void setWakeUp();
  void cancel(std::optional<platform::Scheduler::TimerId>& timer);
  [[nodiscard]] bool isFinishing() const { return _finished != nullptr; }

  Needs _needs;
  const std::chrono::seconds _delay;
  IdlePolicy _policy;
  Inhibitors _inhibitors;
  bool _isRunning = false;
  std::function<void()> _finished;  // null until it is to finish
  std::optional<platform::Scheduler::TimerId> _wakeUp;
  std::optional<platform::Scheduler::TimerId> _kill;
};

}  // namespace pelmora::idle
