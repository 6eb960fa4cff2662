#include "platform/linux/RunningClock.h"

#include <atomic>
#include <csignal>
#include <utility>

namespace pelmora::platform {

namespace {

std::atomic<unsigned> continuations{0};
static_assert(std::atomic<unsigned>::is_always_lock_free);

extern "C" void countContinuation(int) { ++continuations; }

void handleContinuation() {
  struct sigaction action {};
  action.sa_handler = countContinuation;
  action.sa_flags = SA_RESTART;
  sigaction(SIGCONT, &action, nullptr);
}

}  // namespace

RunningClock::RunningClock(const Clock& machine)
    : _machine(machine), _continuations(continuations), _last(machine.mediaTime()) {
  handleContinuation();
}

double RunningClock::mediaTime() const {
  const std::lock_guard lock(_mutex);
  const double now = _machine.mediaTime();
  const double gap = now - std::exchange(_last, now);
  const unsigned heard = continuations;
  if (std::exchange(_continuations, heard) != heard) _stopped += gap;
  return now - _stopped;
}

}  // namespace pelmora::platform
