#pragma once

#include "platform/PropertyList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform {

struct Notification {
  std::string name;
  plist::Value object;
  plist::Dictionary userInfo;
};

/// In-process notifications: `post` calls every observer of the name on the posting thread, in the
/// order of registration, before it returns. An observer may remove itself or others while it runs.
/// Thread: any. Lock: `_mutex`, never held while an observer runs.
class NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;
  enum class Token : std::uint64_t {};

  virtual ~NotificationCenter() = default;

  virtual Token addObserver(std::string name, Handler handler);
  /// After it returns on the thread that posts, the handler is not called again; a call that
  /// another thread has begun may still be running.
  virtual void removeObserver(Token token);
  virtual void post(const Notification& notification);

 private:
  struct Observer {
    Token token{};
    std::string name;
    Handler handler;
  };

  bool isRegistered(const std::shared_ptr<const Observer>& observer);

  std::mutex _mutex;
  std::uint64_t _nextToken = 1;
  std::vector<std::shared_ptr<const Observer>> _observers;
};

}  // namespace pelmora::platform
