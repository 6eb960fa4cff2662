#pragma once

#include "platform/Scheduler.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace pelmora::platform {

/// The tasks that other threads hand to a scheduler's main thread, first in, first out.
/// Thread: `post`, `wake` and `close` from any, the rest on main. Lock: `_mutex`,
/// never held while a task runs or is destroyed.
class PostedTasks {
 public:
  using Task = Scheduler::Task;

  void post(Task task);

  /// Runs the tasks that are there now; those they post are for the next batch. False when there
  /// was none.
  bool runBatch();
  /// Blocks until there is a task, or `wake` was called since the last wait.
  void wait();
  /// The same, for `seconds` at most and never less than that without a reason.
  void waitFor(double seconds);
  void wake();

  /// Drops the tasks that are there and all that follow.
  void close();

 private:
  [[nodiscard]] bool hasWork() const { return _woken || !_tasks.empty(); }

  std::mutex _mutex;  // guards all below
  std::condition_variable _workArrived;
  std::deque<Task> _tasks;
  bool _woken = false;
  bool _closed = false;
};

}  // namespace pelmora::platform
