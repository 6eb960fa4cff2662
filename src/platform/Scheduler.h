#pragma once

#include <cstdint>
#include <functional>

namespace pelmora::platform {

/// The run loop of the module's main thread, and the only way to wait. Times are seconds of
/// `Clock::mediaTime`.
/// Thread: `post`, `isMainThread` and `sleep` from any; the timers on main.
class Scheduler {
 public:
  using Task = std::function<void()>;
  enum class TimerId : std::uint64_t {};

  virtual ~Scheduler() = default;

  /// Runs `task` on main once, `delay` seconds from now.
  virtual TimerId after(double delay, Task task) = 0;
  /// Runs `task` on main every `interval` seconds, first after one interval. Turns that were missed
  /// are skipped, and the grid is kept.
  virtual TimerId every(double interval, Task task) = 0;
  /// Forgets a timer; an ended or unknown one is ignored. After it returns the task never starts.
  virtual void cancel(TimerId timer) = 0;

  /// Runs `task` on main, after those posted before.
  virtual void post(Task task) = 0;
  [[nodiscard]] virtual bool isMainThread() const = 0;

  /// Blocks the calling thread.
  virtual void sleep(double seconds) = 0;
};

}  // namespace pelmora::platform
