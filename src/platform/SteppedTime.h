#pragma once

#include "platform/Clock.h"
#include "platform/PostedTasks.h"
#include "platform/Scheduler.h"
#include "platform/TimerList.h"

#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace pelmora::platform {

/// A clock that stands still until it is told to move. Media time starts at 0. Thread: any.
class SteppedClock : public Clock {
 public:
  explicit SteppedClock(ReferenceTime start = {}) : _wall(start) {}

  [[nodiscard]] ReferenceTime now() const override;
  [[nodiscard]] double mediaTime() const override;

  /// Moves both times on; a time that is past is ignored.
  void advanceTo(double mediaTime);
  /// Sets the wall time alone, as a user sets the clock. It runs on from there.
  void setNow(ReferenceTime moment);

 private:
  mutable std::mutex _mutex;  // guards all below
  ReferenceTime _wall;        // at _wallSetAt
  double _wallSetAt = 0;
  double _media = 0;
};

/// A run loop without time of its own: whoever steps it moves the clock from timer to timer, so
/// that a day runs in the time that its work takes, and twice the same. Thread: main is the one
/// that makes it; `wake`, and what `Scheduler` says, from any. A wait for main ends with this, its
/// task not run.
class SteppedScheduler : public Scheduler {
 public:
  /// The clock outlives it, and is moved by nothing else.
  explicit SteppedScheduler(SteppedClock& clock);
  ~SteppedScheduler() override;
  SteppedScheduler(const SteppedScheduler&) = delete;
  SteppedScheduler& operator=(const SteppedScheduler&) = delete;

  TimerId after(double delay, Task task) override;
  TimerId every(double interval, Task task) override;
  void cancel(TimerId timer) override;
  void post(Task task) override;
  [[nodiscard]] bool isMainThread() const override;
  /// On main it moves the clock, and no timer runs: they are late afterwards, as after a real
  /// sleep. On other threads it returns at once.
  void sleep(double seconds) override;

  /// Moves the clock to `mediaTime`, or as far as tasks slept, and runs what is due on the way in
  /// order of time, then of creation, each with the clock at its time. What is posted runs before
  /// time moves.
  void advanceTo(double mediaTime);
  void advanceBy(double seconds);
  /// Runs posted tasks until there are none.
  void runPosted();
  /// Runs posted tasks, and waits for more, until `done` holds. Time stands still. Whoever makes it
  /// hold on another thread then posts something or calls `wake`.
  void runPostedUntil(const std::function<bool()>& done);
  /// Makes `runPostedUntil` ask again.
  void wake();

  /// Called on main after each timer's task and each batch of posted tasks.
  void setEndOfTurn(std::function<void()> endOfTurn);

  /// How long main slept, sleep by sleep.
  [[nodiscard]] const std::vector<double>& sleeps() const { return _sleeps; }

 private:
  void assertOnMain() const;
  void endTurn();

  SteppedClock& _clock;
  const std::thread::id _main;
  PostedTasks _posted;
  // On main:
  TimerList _timers;
  std::function<void()> _endOfTurn;
  std::vector<double> _sleeps;
};

}  // namespace pelmora::platform
