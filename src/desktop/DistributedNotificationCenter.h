#pragma once

#include "desktop/NotificationInbox.h"
#include "desktop/NotificationPort.h"
#include "desktop/SessionBus.h"
#include "platform/NotificationCenter.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace pelmora::desktop {

/// The notifications of the user's session: what is posted here reaches the observers of this
/// process at once, as with any center, and those of other processes by the bus; what they post
/// reaches the observers here on main, in order. Without a bus it is a center of this process.
/// Thread: made and destroyed on main, the rest from any; nothing waits for the bus. Lock:
/// `_mutex`.
class DistributedNotificationCenter : public platform::NotificationCenter {
 public:
  /// Both outlive it.
  DistributedNotificationCenter(SessionBus& bus, platform::Scheduler& scheduler);
  ~DistributedNotificationCenter() override;

  Token addObserver(std::string name, Handler handler) override;
  void removeObserver(Token token) override;
  void post(const platform::Notification& notification) override;

  /// What is put here reaches the observers of this process alone, on main.
  [[nodiscard]] const std::shared_ptr<NotificationInbox>& inbox() const { return _inbox; }

 private:
  const std::shared_ptr<NotificationInbox> _inbox;
  OnBus<NotificationPort> _port;
  std::mutex _mutex;
  std::map<Token, std::string> _names;    // under the mutex; by those who observe
  std::map<std::string, int> _observers;  // under the mutex; by name
};

}  // namespace pelmora::desktop
