#pragma once

#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace pelmora::desktop {

/// What arrives on other threads for the observers of the module, handed to them on main in order.
/// It holds 256 notifications: when more arrive than main takes, the oldest are dropped.
/// Thread: `put` from any; `close` on main. Lock: `_mutex`, never held while one is delivered.
class NotificationInbox : public std::enable_shared_from_this<NotificationInbox> {
 public:
  using Deliver = std::function<void(const platform::Notification&)>;

  /// Held by shared pointers only. `scheduler` outlives those who put.
  NotificationInbox(platform::Scheduler& scheduler, Deliver deliver)
      : _scheduler(scheduler), _deliver(std::move(deliver)) {}

  void put(platform::Notification notification);
  /// Delivers nothing any more.
  void close();

 private:
  void deliverAll();

  platform::Scheduler& _scheduler;
  Deliver _deliver;  // on main; null when closed
  std::mutex _mutex;
  std::deque<platform::Notification> _waiting;  // under the mutex
};

}  // namespace pelmora::desktop
