#pragma once

#include "platform/Clock.h"
#include "platform/PostedTasks.h"
#include "platform/Scheduler.h"
#include "platform/TimerList.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace pelmora::platform {

/// A run loop on the thread that calls `run`. It sleeps until something is posted or the next timer
/// is due, and wakes once for all timers that are due together. A loop runs once in its life.
/// Thread: main is the first that runs it, sets a timer or sets the end of turn; `stop`, and what
/// `Scheduler` says, from any.
class RunLoopScheduler : public Scheduler {
 public:
  /// `clock` is a real one, and outlives this.
  explicit RunLoopScheduler(const Clock& clock);
  ~RunLoopScheduler() override;
  RunLoopScheduler(const RunLoopScheduler&) = delete;
  RunLoopScheduler& operator=(const RunLoopScheduler&) = delete;

  TimerId after(double delay, Task task) override;
  TimerId every(double interval, Task task) override;
  void cancel(TimerId timer) override;
  void post(Task task) override;
  /// No thread is main before there is one.
  [[nodiscard]] bool isMainThread() const override;
  /// A stop ends it, on whatever thread; after one it returns at once.
  void sleep(double seconds) override;

  /// Runs until it is stopped, then what was posted before the end. Returns at once when it was
  /// stopped before.
  void run();
  /// Ends `run` after the task that runs now, and every sleep.
  void stop();

  /// Called on main after each timer's task and each batch of posted tasks.
  void setEndOfTurn(std::function<void()> endOfTurn);

  /// How often the loop woke: what it costs at rest. On main.
  [[nodiscard]] std::uint64_t wakeUps() const { return _wakeUps; }

 private:
  void becomeMain();
  void runPosted();
  void runDueTimers();
  void waitForWork();
  void endTurn();

  const Clock& _clock;
  std::atomic<std::thread::id> _main{};
  std::atomic<bool> _stopped{false};  // set under _stopMutex
  std::mutex _stopMutex;
  std::condition_variable _stopCalled;
  PostedTasks _posted;
  // On main:
  TimerList _timers;
  std::function<void()> _endOfTurn;
  std::uint64_t _wakeUps = 0;
};

}  // namespace pelmora::platform
