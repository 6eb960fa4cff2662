#include "idle/IdleWatch.h"

#include <utility>

namespace pelmora::idle {

IdleWatch::IdleWatch(const Needs& needs, std::chrono::seconds delay)
    : _needs(needs),
      _delay(delay),
      _policy(static_cast<double>(delay.count())),
      _inhibitors(needs.scheduler, [this] { inhibitionChanged(); }) {}

IdleWatch::~IdleWatch() {
  cancel(_wakeUp);
  cancel(_kill);
}

void IdleWatch::follow(IdleMonitor& monitor) {
  monitor.start(_delay, {.becameIdle = [this] { act(_policy.becameIdle()); },
                         .becameActive = [this] { act(_policy.becameActive()); }});
}

void IdleWatch::postpone() { act(_policy.postponed(_needs.clock.mediaTime())); }

void IdleWatch::finish(std::function<void()> ended) {
  if (isFinishing()) return;
  _finished = std::move(ended);
  cancel(_wakeUp);
  if (!_isRunning) return _finished();
  if (!_kill) stopSaver();
}

void IdleWatch::act(IdlePolicy::Action action) {
  if (isFinishing()) return;
  switch (action) {
    case IdlePolicy::Action::none:
      break;
    case IdlePolicy::Action::ask:
      _inhibitors.ask([this] {
        inhibitionChanged();
        act(_policy.answered(_needs.clock.mediaTime()));
        if (_policy.state() == IdlePolicy::State::waiting && _policy.isInhibited()) {
          _needs.log.print("Pelmora: The user is idle, but the saver is held off by %s",
                           _inhibitors.holders().c_str());
        }
      });
      break;
    case IdlePolicy::Action::start:
      startSaver();
      break;
    case IdlePolicy::Action::stop:
      stopSaver();
      break;
  }
  setWakeUp();
}

void IdleWatch::inhibitionChanged() {
  act(_policy.inhibitionChanged(_inhibitors.isAnyHeld(), _needs.clock.mediaTime()));
}

void IdleWatch::startSaver() {
  _needs.log.write("Pelmora: The user is idle: starting the saver");
  _isRunning = true;
  _needs.saver.start([this](const std::string& how) { saverEnded(how); });
}

void IdleWatch::stopSaver() {
  _needs.log.write(isFinishing() ? "Pelmora: Ending the saver"
                                 : "Pelmora: The user is active: ending the saver");
  _kill = _needs.scheduler.after(kPatience, [this] {
    _kill.reset();
    _needs.log.write("Pelmora: The saver does not end: killing it");
    _needs.saver.kill();
  });
  _needs.saver.stop();
}

void IdleWatch::saverEnded(const std::string& how) {
  _isRunning = false;
  cancel(_kill);
  _needs.log.print("Pelmora: The saver %s", how.c_str());
  if (isFinishing()) return _finished();
  act(_policy.saverEnded());
}

void IdleWatch::setWakeUp() {
  cancel(_wakeUp);
  const auto due = _policy.wakeAt();
  if (!due) return;
  _wakeUp = _needs.scheduler.after(*due - _needs.clock.mediaTime(), [this] {
    _wakeUp.reset();
    act(_policy.timeReached(_needs.clock.mediaTime()));
  });
}

void IdleWatch::cancel(std::optional<platform::Scheduler::TimerId>& timer) {
  if (timer) _needs.scheduler.cancel(*timer);
  timer.reset();
}

}  // namespace pelmora::idle
