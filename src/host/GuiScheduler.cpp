#include "host/GuiScheduler.h"

#include "platform/Clock.h"

#include <QThread>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace pelmora::host {

GuiScheduler::GuiScheduler(const platform::Clock& clock) : _clock(clock), _timers(clock) {
  _timer.setSingleShot(true);
  _timer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&_timer, &QTimer::timeout, &_context, [this] { runDueTimers(); });
}

GuiScheduler::~GuiScheduler() { _posted.close(); }

platform::Scheduler::TimerId GuiScheduler::after(double delay, Task task) {
  const TimerId id = _timers.after(delay, std::move(task));
  setTimer();
  return id;
}

platform::Scheduler::TimerId GuiScheduler::every(double interval, Task task) {
  const TimerId id = _timers.every(interval, std::move(task));
  setTimer();
  return id;
}

void GuiScheduler::cancel(TimerId timer) {
  _timers.cancel(timer);
  setTimer();
}

void GuiScheduler::post(Task task) {
  _posted.post(std::move(task));
  QMetaObject::invokeMethod(
      &_context, [this] { runPosted(); }, Qt::QueuedConnection);
}

bool GuiScheduler::isMainThread() const { return QThread::currentThread() == _context.thread(); }

void GuiScheduler::sleep(double seconds) {
  constexpr double kLongest = 1e6;
  if (seconds > 0) {
    std::this_thread::sleep_for(std::chrono::duration<double>(std::min(seconds, kLongest)));
  }
}

void GuiScheduler::runPosted() {
  if (_posted.runBatch()) _endOfTurn();
}

void GuiScheduler::runDueTimers() {
  // Timers that these set are for the next turn.
  const double now = _clock.mediaTime();
  for (auto due = _timers.nextDue(); due && *due <= now; due = _timers.nextDue()) {
    _timers.runEarliest();
    _endOfTurn();
  }
  setTimer();
}

void GuiScheduler::setTimer() {
  constexpr double kLongest = 86'400;  // longer waits are begun again
  const auto due = _timers.nextDue();
  if (!due) return _timer.stop();
  const double wait = std::clamp(*due - _clock.mediaTime(), 0.0, kLongest);
  _timer.start(static_cast<int>(std::ceil(wait * 1000)));
}

}  // namespace pelmora::host
