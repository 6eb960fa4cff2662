#pragma once

#include <chrono>
#include <functional>

namespace pelmora::idle {

/// Tells when the user has been idle for a while, and when they are active again.
/// Thread: main, which has Qt's event loop. Wakes nobody while the user is active.
class IdleMonitor {
 public:
  struct Events {
    std::function<void()> becameIdle;
    std::function<void()> becameActive;
  };

  virtual ~IdleMonitor() = default;

  /// Once. Idle means: no input for `delay`. The two events take turns, idle comes first.
  virtual void start(std::chrono::seconds delay, Events events) = 0;
};

}  // namespace pelmora::idle
