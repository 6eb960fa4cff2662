#include "platform/SteppedTime.h"

#include <algorithm>
#include <cassert>
#include <optional>
#include <utility>

namespace pelmora::platform {

ReferenceTime SteppedClock::now() const {
  const std::lock_guard lock(_mutex);
  return {_wall.seconds + (_media - _wallSetAt)};
}

double SteppedClock::mediaTime() const {
  const std::lock_guard lock(_mutex);
  return _media;
}

void SteppedClock::advanceTo(double mediaTime) {
  const std::lock_guard lock(_mutex);
  if (mediaTime > _media) _media = mediaTime;
}

void SteppedClock::setNow(ReferenceTime moment) {
  const std::lock_guard lock(_mutex);
  _wall = moment;
  _wallSetAt = _media;
}

SteppedScheduler::SteppedScheduler(SteppedClock& clock)
    : _clock(clock), _main(std::this_thread::get_id()), _timers(clock) {}

SteppedScheduler::~SteppedScheduler() { _posted.close(); }

Scheduler::TimerId SteppedScheduler::after(double delay, Task task) {
  assertOnMain();
  return _timers.after(delay, std::move(task));
}

Scheduler::TimerId SteppedScheduler::every(double interval, Task task) {
  assertOnMain();
  return _timers.every(interval, std::move(task));
}

void SteppedScheduler::cancel(TimerId timer) {
  assertOnMain();
  _timers.cancel(timer);
}

void SteppedScheduler::post(Task task) { _posted.post(std::move(task)); }

bool SteppedScheduler::isMainThread() const { return std::this_thread::get_id() == _main; }

void SteppedScheduler::sleep(double seconds) {
  if (!isMainThread()) return;
  _sleeps.push_back(seconds);
  _clock.advanceTo(_clock.mediaTime() + seconds);
}

void SteppedScheduler::advanceTo(double mediaTime) {
  assertOnMain();
  for (;;) {
    runPosted();
    const std::optional<double> due = _timers.nextDue();
    if (!due || *due > std::max(mediaTime, _clock.mediaTime())) break;
    _clock.advanceTo(*due);
    _timers.runEarliest();
    endTurn();
  }
  _clock.advanceTo(mediaTime);
}

void SteppedScheduler::advanceBy(double seconds) { advanceTo(_clock.mediaTime() + seconds); }

void SteppedScheduler::runPosted() {
  assertOnMain();
  while (_posted.runBatch()) endTurn();
}

void SteppedScheduler::runPostedUntil(const std::function<bool()>& done) {
  for (runPosted(); !done(); runPosted()) _posted.wait();
}

void SteppedScheduler::wake() { _posted.wake(); }

void SteppedScheduler::setEndOfTurn(std::function<void()> endOfTurn) {
  assertOnMain();
  _endOfTurn = std::move(endOfTurn);
}

void SteppedScheduler::assertOnMain() const { assert(isMainThread() && "timers belong to main"); }

void SteppedScheduler::endTurn() {
  if (_endOfTurn) _endOfTurn();
}

}  // namespace pelmora::platform
