#include "sources/QueueObserver.h"

#include <memory>
#include <mutex>
#include <utility>

namespace pelmora::sources {

namespace {

using platform::Notification;
using platform::NotificationCenter;

class Handling : public platform::Operation {
 public:
  Handling(const NotificationCenter::Handler& handler, Notification notification)
      : _handler(handler), _notification(std::move(notification)) {}

  void main() override { _handler(_notification); }

 private:
  const NotificationCenter::Handler& _handler;
  const Notification _notification;
};

}  // namespace

struct QueueObserver::State {
  State(std::string queueName, NotificationCenter::Handler chosen)
      : handler(std::move(chosen)),
        queue(std::make_unique<platform::OperationQueue>(
            platform::OperationQueue::Config{.name = std::move(queueName)})) {}

  void handle(const Notification& posted) {
    const std::lock_guard lock(mutex);
    if (queue) queue->addOperation(std::make_shared<Handling>(handler, posted));
  }

  const NotificationCenter::Handler handler;
  std::mutex mutex;                                 // guards the pointer
  std::unique_ptr<platform::OperationQueue> queue;  // null: ended
};

QueueObserver::QueueObserver(NotificationCenter& center, std::string notification,
                             std::string queueName, NotificationCenter::Handler handler)
    : _center(center),
      _state(std::make_shared<State>(std::move(queueName), std::move(handler))),
      _token(center.addObserver(
          std::move(notification),
          [state = _state](const Notification& posted) { state->handle(posted); })) {}

QueueObserver::~QueueObserver() {
  _center.removeObserver(_token);
  std::unique_ptr<platform::OperationQueue> ended;  // after the lock is given back: it waits
  const std::lock_guard lock(_state->mutex);
  ended.swap(_state->queue);
}

platform::OperationQueue& QueueObserver::queue() const { return *_state->queue; }

}  // namespace pelmora::sources
