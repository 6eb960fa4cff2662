#include "platform/PostedTasks.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <utility>

namespace pelmora::platform {

void PostedTasks::post(Task task) {
  {
    const std::lock_guard lock(_mutex);
    if (_closed) return;
    _tasks.push_back(std::move(task));
  }
  _workArrived.notify_one();
}

bool PostedTasks::runBatch() {
  std::unique_lock lock(_mutex);
  const std::size_t count = _tasks.size();
  for (std::size_t left = count; left > 0 && !_tasks.empty(); --left) {
    // One at a time, so that a task that waits for later ones can run them itself.
    Task task = std::move(_tasks.front());
    _tasks.pop_front();
    lock.unlock();
    task();
    task = nullptr;
    lock.lock();
  }
  return count > 0;
}

void PostedTasks::wait() {
  std::unique_lock lock(_mutex);
  _workArrived.wait(lock, [this] { return hasWork(); });
  _woken = false;
}

void PostedTasks::waitFor(double seconds) {
  // A moment late rather than early: rounding must not cost a second wake-up.
  constexpr double kMomentLater = 1e-6;
  constexpr double kLongest = 1e6;
  const std::chrono::duration<double> duration((seconds > 0 ? std::min(seconds, kLongest) : 0) +
                                               kMomentLater);
  std::unique_lock lock(_mutex);
  _workArrived.wait_for(lock, std::chrono::ceil<std::chrono::nanoseconds>(duration),
                        [this] { return hasWork(); });
  _woken = false;
}

void PostedTasks::wake() {
  {
    const std::lock_guard lock(_mutex);
    _woken = true;
  }
  _workArrived.notify_one();
}

void PostedTasks::close() {
  std::deque<Task> dropped;  // destroyed after the lock is given back
  const std::lock_guard lock(_mutex);
  _closed = true;
  dropped.swap(_tasks);
}

}  // namespace pelmora::platform
