#pragma once

#include "platform/Scheduler.h"

#include <memory>

namespace pelmora::sources {

/// Lets worker threads have things done on main and wait for it, for as long as their owner lives:
/// an owner that ends on main could otherwise wait for a worker that waits for main. Thread:
/// `runAndWait` and `run` from any, the rest on main.
class MainTurns {
 public:
  using Task = platform::Scheduler::Task;

  explicit MainTurns(platform::Scheduler& scheduler);
  ~MainTurns() { end(); }
  MainTurns(const MainTurns&) = delete;
  MainTurns& operator=(const MainTurns&) = delete;

  /// Runs `task` on main, at once when called there, and returns when it has run, or at the end.
  void runAndWait(const Task& task);
  /// Runs `task` on main, at once when called there, without waiting for it.
  void run(const Task& task);
  /// No task starts any more, and nobody waits.
  void end();

 private:
  struct State;

  void post(const Task& task, std::shared_ptr<bool> isDone);

  platform::Scheduler& _scheduler;
  const std::shared_ptr<State> _state;
};

}  // namespace pelmora::sources
