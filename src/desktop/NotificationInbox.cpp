#include "desktop/NotificationInbox.h"

#include <utility>

namespace pelmora::desktop {

namespace {

constexpr std::size_t kMostWaiting = 256;

}  // namespace

void NotificationInbox::put(platform::Notification notification) {
  {
    const std::lock_guard lock(_mutex);
    if (_waiting.size() >= kMostWaiting) _waiting.pop_front();
    _waiting.push_back(std::move(notification));
    if (_waiting.size() > 1) return;  // main knows that there are some
  }
  _scheduler.post([inbox = weak_from_this()] {
    if (const auto held = inbox.lock()) held->deliverAll();
  });
}

void NotificationInbox::close() { _deliver = nullptr; }

void NotificationInbox::deliverAll() {
  std::deque<platform::Notification> arrived;
  {
    const std::lock_guard lock(_mutex);
    arrived.swap(_waiting);
  }
  for (const platform::Notification& each : arrived) {
    if (_deliver) _deliver(each);
  }
}

}  // namespace pelmora::desktop
