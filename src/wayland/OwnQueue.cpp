#include "wayland/OwnQueue.h"

#include <poll.h>
#include <wayland-client.h>

#include <cerrno>

namespace pelmora::wayland {

namespace {

/// A copy of the connection whose new objects have their events in the queue.
wl_display* onQueue(wl_display* connection, wl_event_queue* queue) {
  if (!queue) return nullptr;
  auto* copy = static_cast<wl_display*>(wl_proxy_create_wrapper(connection));
  if (copy) wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(copy), queue);
  return copy;
}

void answered(void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
  *static_cast<bool*>(data) = true;
}

constexpr wl_callback_listener kAnswerListener = {answered};

}  // namespace

OwnQueue::OwnQueue(wl_display* connection)
    : _connection(connection),
      _queue(wl_display_create_queue(connection)),
      _display(onQueue(connection, _queue)) {}

OwnQueue::~OwnQueue() {
  if (_display) wl_proxy_wrapper_destroy(_display);
  if (_queue) wl_event_queue_destroy(_queue);
}

bool OwnQueue::roundTrip(std::chrono::milliseconds limit) {
  if (!_display) return false;
  const Deadline deadline = std::chrono::steady_clock::now() + limit;
  bool isAnswered = false;
  wl_callback* answer = wl_display_sync(_display);
  wl_callback_add_listener(answer, &kAnswerListener, &isAnswered);
  while (!isAnswered && readEvents(deadline)) {
  }
  wl_callback_destroy(answer);
  return isAnswered;
}

/// Reads what has come, or waits for it until the deadline; false when there is nothing more to
/// hope for.
bool OwnQueue::readEvents(Deadline deadline) {
  if (wl_display_prepare_read_queue(_connection, _queue) != 0) {
    return wl_display_dispatch_queue_pending(_connection, _queue) >= 0;
  }
  wl_display_flush(_connection);
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now());
  pollfd ready{wl_display_get_fd(_connection), POLLIN, 0};
  const int found = left.count() > 0 ? poll(&ready, 1, static_cast<int>(left.count())) : 0;
  if (found <= 0) {
    const bool isInterrupted = found < 0 && errno == EINTR;
    wl_display_cancel_read(_connection);
    return isInterrupted;
  }
  return wl_display_read_events(_connection) == 0 &&
         wl_display_dispatch_queue_pending(_connection, _queue) >= 0;
}

}  // namespace pelmora::wayland
