#include "platform/linux/RunLoopScheduler.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <optional>
#include <utility>

namespace pelmora::platform {

RunLoopScheduler::RunLoopScheduler(const Clock& clock) : _clock(clock), _timers(clock) {}

RunLoopScheduler::~RunLoopScheduler() { _posted.close(); }

Scheduler::TimerId RunLoopScheduler::after(double delay, Task task) {
  becomeMain();
  return _timers.after(delay, std::move(task));
}

Scheduler::TimerId RunLoopScheduler::every(double interval, Task task) {
  becomeMain();
  return _timers.every(interval, std::move(task));
}

void RunLoopScheduler::cancel(TimerId timer) {
  becomeMain();
  _timers.cancel(timer);
}

void RunLoopScheduler::post(Task task) { _posted.post(std::move(task)); }

bool RunLoopScheduler::isMainThread() const { return _main == std::this_thread::get_id(); }

void RunLoopScheduler::sleep(double seconds) {
  if (!(seconds > 0)) return;
  constexpr double kLongest = 1e6;
  const std::chrono::duration<double> duration(std::min(seconds, kLongest));
  std::unique_lock lock(_stopMutex);
  _stopCalled.wait_for(lock, std::chrono::ceil<std::chrono::nanoseconds>(duration),
                       [this] { return _stopped.load(); });
}

void RunLoopScheduler::run() {
  becomeMain();
  while (!_stopped) {
    runPosted();
    runDueTimers();
    if (!_stopped) waitForWork();
  }
  runPosted();
  _posted.close();
}

void RunLoopScheduler::stop() {
  {
    const std::lock_guard lock(_stopMutex);
    _stopped = true;
  }
  _stopCalled.notify_all();
  _posted.wake();
}

void RunLoopScheduler::setEndOfTurn(std::function<void()> endOfTurn) {
  becomeMain();
  _endOfTurn = std::move(endOfTurn);
}

void RunLoopScheduler::becomeMain() {
  std::thread::id none;
  _main.compare_exchange_strong(none, std::this_thread::get_id());
  assert(isMainThread() && "timers belong to main");
}

void RunLoopScheduler::runPosted() {
  if (_posted.runBatch()) endTurn();
}

void RunLoopScheduler::runDueTimers() {
  // Timers that these set are for the next turn, after what was posted meanwhile.
  const double now = _clock.mediaTime();
  for (auto due = _timers.nextDue(); due && *due <= now && !_stopped; due = _timers.nextDue()) {
    _timers.runEarliest();
    endTurn();
  }
}

void RunLoopScheduler::waitForWork() {
  const std::optional<double> due = _timers.nextDue();
  if (due) {
    const double delay = *due - _clock.mediaTime();
    if (delay <= 0) return;
    _posted.waitFor(delay);
  } else {
    _posted.wait();
  }
  ++_wakeUps;
}

void RunLoopScheduler::endTurn() {
  if (_endOfTurn) _endOfTurn();
}

}  // namespace pelmora::platform
