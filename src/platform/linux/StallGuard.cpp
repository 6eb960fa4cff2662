#include "platform/linux/StallGuard.h"

#include <deque>
#include <map>
#include <system_error>
#include <thread>

namespace pelmora::platform {

/// One piece of work, on its way to a thread or on it.
struct StallGuard::Task {
  std::string name;
  std::function<void()> work;
  bool isDone = false;
  bool isAbandoned = false;  // nobody waits for it any more
};

/// What the threads share with whoever waits; those that hang keep it.
struct StallGuard::State {
  mutable std::mutex mutex;  // guards all below
  std::condition_variable arrived;
  std::condition_variable done;
  std::deque<std::shared_ptr<Task>> tasks;
  std::map<std::string, int> stalled;  // how many hang under each name
  int idleThreads = 0;
  bool isEnding = false;
  bool isGivenUp = false;
};

StallGuard::StallGuard(std::chrono::milliseconds limit)
    : _limit(limit), _state(std::make_shared<State>()) {}

StallGuard::~StallGuard() {
  const std::lock_guard lock(_state->mutex);
  _state->isEnding = true;
  _state->arrived.notify_all();
}

void StallGuard::giveUp() {
  const std::lock_guard lock(_state->mutex);
  _state->isGivenUp = true;
  _state->done.notify_all();
}

bool StallGuard::isStalled(const std::string& name) const {
  const std::lock_guard lock(_state->mutex);
  return _state->stalled.contains(name);
}

bool StallGuard::finish(const std::string& name, std::function<void()> work) {
  const auto task = std::make_shared<Task>(Task{name, std::move(work)});
  std::unique_lock lock(_state->mutex);
  if (_state->isGivenUp || _state->stalled.contains(name)) return false;
  if (static_cast<int>(_state->tasks.size()) >= _state->idleThreads) {
    try {
      std::thread([state = _state] { serve(state); }).detach();
    } catch (const std::system_error&) {
      return false;
    }
    ++_state->idleThreads;  // as soon as it runs
  }
  _state->tasks.push_back(task);
  _state->arrived.notify_one();
  _state->done.wait_for(lock, _limit, [&] { return task->isDone || _state->isGivenUp; });
  if (task->isDone) return true;
  task->isAbandoned = true;
  ++_state->stalled[name];
  return false;
}

void StallGuard::serve(const std::shared_ptr<State>& state) {
  std::unique_lock lock(state->mutex);
  for (;;) {
    state->arrived.wait(lock, [&state] { return state->isEnding || !state->tasks.empty(); });
    if (state->tasks.empty()) return;
    const std::shared_ptr<Task> task = std::move(state->tasks.front());
    state->tasks.pop_front();
    --state->idleThreads;
    lock.unlock();
    task->work();
    task->work = nullptr;
    lock.lock();
    task->isDone = true;
    ++state->idleThreads;
    if (task->isAbandoned && --state->stalled[task->name] == 0) state->stalled.erase(task->name);
    state->done.notify_all();
  }
}

}  // namespace pelmora::platform
