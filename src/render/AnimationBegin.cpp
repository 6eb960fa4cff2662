#include "render/AnimationBegin.h"

#include "platform/Scheduler.h"

#include <cmath>
#include <utility>

namespace pelmora::render {

BeginNotice::BeginNotice(platform::Scheduler& scheduler, std::function<void()> received)
    : _received(std::move(received)), _scheduler(&scheduler) {}

void BeginNotice::post() {
  const std::lock_guard lock(_mutex);
  if (_scheduler == nullptr || _posted) return;
  _posted = true;
  _scheduler->post([self = shared_from_this()] { self->receive(); });
}

void BeginNotice::close() {
  _received = nullptr;
  const std::lock_guard lock(_mutex);
  _scheduler = nullptr;
}

void BeginNotice::receive() {
  {
    const std::lock_guard lock(_mutex);
    _posted = false;
  }
  if (_received) _received();
}

bool AnimationBegin::isKnown() const { return !std::isnan(time()); }

void AnimationBegin::fix(double time) {
  double unknown = _time.load(std::memory_order_acquire);
  if (!std::isnan(unknown)) return;
  if (_time.compare_exchange_strong(unknown, time, std::memory_order_acq_rel) && _notice) {
    _notice->post();
  }
}

}  // namespace pelmora::render
