#pragma once

#include "platform/NotificationCenter.h"
#include "platform/OperationQueue.h"

#include <memory>
#include <string>

namespace pelmora::sources {

/// Observes a notification of any object, and handles each on an operation queue of its own, one
/// after another. Thread: made and ended on any but the queue's. Ownership: the center outlives it.
/// Destruction removes the observer, drops what is queued, and waits for the handler under way.
class QueueObserver {
 public:
  QueueObserver(platform::NotificationCenter& center, std::string notification,
                std::string queueName, platform::NotificationCenter::Handler handler);
  ~QueueObserver();
  QueueObserver(const QueueObserver&) = delete;
  QueueObserver& operator=(const QueueObserver&) = delete;

  [[nodiscard]] platform::OperationQueue& queue() const;

 private:
  struct State;

  platform::NotificationCenter& _center;
  const std::shared_ptr<State> _state;  // shared with posts under way on other threads
  const platform::NotificationCenter::Token _token;
};

}  // namespace pelmora::sources
