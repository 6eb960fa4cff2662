#include "sources/MainTurns.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace pelmora::sources {

/// Shared with the posted tasks, which may outlive everything else.
struct MainTurns::State {
  bool hasEnded() {
    const std::lock_guard lock(mutex);
    return ended;
  }

  std::mutex mutex;  // guards all below, and each turn's flag
  std::condition_variable changed;
  bool ended = false;
};

MainTurns::MainTurns(platform::Scheduler& scheduler)
    : _scheduler(scheduler), _state(std::make_shared<State>()) {}

void MainTurns::runAndWait(const Task& task) {
  if (_scheduler.isMainThread()) {
    task();
    return;
  }
  const auto isDone = std::make_shared<bool>(false);
  post(task, isDone);
  std::unique_lock lock(_state->mutex);
  _state->changed.wait(lock, [this, &isDone] { return *isDone || _state->ended; });
}

void MainTurns::run(const Task& task) {
  if (_scheduler.isMainThread()) {
    task();
  } else {
    post(task, std::make_shared<bool>(false));
  }
}

void MainTurns::post(const Task& task, std::shared_ptr<bool> isDone) {
  _scheduler.post([state = _state, task, isDone = std::move(isDone)] {
    if (state->hasEnded()) return;
    task();
    const std::lock_guard lock(state->mutex);
    *isDone = true;
    state->changed.notify_all();
  });
}

void MainTurns::end() {
  const std::lock_guard lock(_state->mutex);
  _state->ended = true;
  _state->changed.notify_all();
}

}  // namespace pelmora::sources
