#pragma once

#include "platform/Scheduler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace pelmora::platform {

class Clock;

/// The timers of a scheduler: what is due, and in which order. Timers due at the same time run in
/// the order of their creation. A task may add and cancel timers, its own included. Thread: one.
/// Units: seconds of the clock's media time.
class TimerList {
 public:
  using Task = Scheduler::Task;
  using TimerId = Scheduler::TimerId;

  explicit TimerList(const Clock& clock) : _clock(clock) {}

  TimerId after(double delay, Task task);
  TimerId every(double interval, Task task);
  void cancel(TimerId timer);

  /// When the earliest timer is due; nullopt without timers.
  [[nodiscard]] std::optional<double> nextDue() const;
  /// Runs the earliest timer's task, whatever the time, and forgets the timer or sets it to the
  /// first turn of its grid after the task's end. There must be a timer.
  void runEarliest();

 private:
  struct Timer {
    TimerId id{};
    double start = 0;
    double interval = 0;  // 0: once
    double due = 0;
    std::shared_ptr<const Task> task;  // kept by the call too, as the task may cancel its timer
  };

  TimerId add(Timer timer);
  [[nodiscard]] std::vector<Timer>::const_iterator earliest() const;
  void scheduleNextTurn(TimerId id);

  const Clock& _clock;
  std::vector<Timer> _timers;  // in order of creation
  std::uint64_t _lastId = 0;
};

}  // namespace pelmora::platform
