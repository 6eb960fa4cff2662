#include "platform/TimerList.h"

#include "platform/Clock.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace pelmora::platform {

namespace {

/// A shorter one would keep the thread from everything else.
constexpr double kShortestInterval = 0.001;

/// The first time after `now` on the grid of `start` and `interval`. Counted from the start, so
/// that a day of turns does not add up their rounding.
double firstTurnAfter(double now, double start, double interval) {
  double turn = std::floor((now - start) / interval) + 1;
  while (start + turn * interval <= now) ++turn;
  return start + turn * interval;
}

}  // namespace

TimerList::TimerId TimerList::after(double delay, Task task) {
  Timer timer;
  timer.start = _clock.mediaTime();
  timer.due = timer.start + (delay > 0 ? delay : 0);
  timer.task = std::make_shared<const Task>(std::move(task));
  return add(std::move(timer));
}

TimerList::TimerId TimerList::every(double interval, Task task) {
  Timer timer;
  timer.start = _clock.mediaTime();
  timer.interval = interval > kShortestInterval ? interval : kShortestInterval;
  timer.due = timer.start + timer.interval;
  timer.task = std::make_shared<const Task>(std::move(task));
  return add(std::move(timer));
}

TimerList::TimerId TimerList::add(Timer timer) {
  timer.id = TimerId{++_lastId};
  _timers.push_back(std::move(timer));
  return _timers.back().id;
}

void TimerList::cancel(TimerId timer) {
  const auto found = std::find_if(_timers.begin(), _timers.end(),
                                  [timer](const Timer& each) { return each.id == timer; });
  if (found == _timers.end()) return;
  const Timer cancelled = std::move(*found);  // destroyed last: a task's end may cancel others
  _timers.erase(found);
}

std::optional<double> TimerList::nextDue() const {
  if (_timers.empty()) return std::nullopt;
  return earliest()->due;
}

void TimerList::runEarliest() {
  assert(!_timers.empty());
  const Timer timer = *earliest();
  if (timer.interval == 0) cancel(timer.id);
  (*timer.task)();
  scheduleNextTurn(timer.id);
}

std::vector<TimerList::Timer>::const_iterator TimerList::earliest() const {
  return std::min_element(_timers.begin(), _timers.end(),
                          [](const Timer& a, const Timer& b) { return a.due < b.due; });
}

void TimerList::scheduleNextTurn(TimerId id) {
  for (Timer& timer : _timers) {
    if (timer.id == id) timer.due = firstTurnAfter(_clock.mediaTime(), timer.start, timer.interval);
  }
}

}  // namespace pelmora::platform
