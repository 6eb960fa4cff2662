#include "idle/IdlePolicy.h"

namespace pelmora::idle {

IdlePolicy::Action IdlePolicy::becameIdle() {
  _isIdle = true;
  if (_state != State::active) return Action::none;
  _state = State::asking;
  return Action::ask;
}

IdlePolicy::Action IdlePolicy::becameActive() {
  _isIdle = false;
  if (_state == State::running) {
    _state = State::ending;
    return Action::stop;
  }
  if (_state != State::ending) _state = State::active;
  return Action::none;
}

IdlePolicy::Action IdlePolicy::inhibitionChanged(bool isInhibited, double now) {
  if (_isInhibited && !isInhibited) _freeSince = now;
  _isInhibited = isInhibited;
  return _state == State::waiting ? consider(now) : Action::none;
}

IdlePolicy::Action IdlePolicy::postponed(double now) {
  _freeSince = now;
  return _state == State::waiting ? consider(now) : Action::none;
}

IdlePolicy::Action IdlePolicy::answered(double now) {
  return _state == State::asking ? consider(now) : Action::none;
}

IdlePolicy::Action IdlePolicy::timeReached(double now) {
  return _state == State::waiting ? consider(now) : Action::none;
}

IdlePolicy::Action IdlePolicy::saverEnded() {
  if (_state == State::running) _state = State::ended;
  if (_state != State::ending) return Action::none;
  _state = State::active;
  return _isIdle ? becameIdle() : Action::none;
}

std::optional<double> IdlePolicy::wakeAt() const {
  if (_state != State::waiting || _isInhibited || !_freeSince) return std::nullopt;
  return *_freeSince + _delay;
}

IdlePolicy::Action IdlePolicy::consider(double now) {
  _state = State::waiting;
  if (_isInhibited) return Action::none;
  if (const auto due = wakeAt(); due && now < *due) return Action::none;
  _state = State::running;
  return Action::start;
}

}  // namespace pelmora::idle
