#pragma once

#include <chrono>

struct wl_display;
struct wl_event_queue;

namespace pelmora::wayland {

/// How long a compositor may take to answer.
inline constexpr std::chrono::milliseconds kAnswerLimit{2000};

/// A queue of one's own on a connection from which others read too. What is created from its
/// `display` has its events there, and has to be destroyed first. Thread: any, one at a time.
/// Ownership: the connection outlives this.
class OwnQueue {
 public:
  explicit OwnQueue(wl_display* connection);
  ~OwnQueue();
  OwnQueue(const OwnQueue&) = delete;
  OwnQueue& operator=(const OwnQueue&) = delete;

  [[nodiscard]] wl_display* display() const { return _display; }
  /// Returns when the compositor has done what it was asked for on the whole connection, and all
  /// that it sent until then has been read: this queue's events are handled, those of others are in
  /// their queues. False when it does not answer in time, or has died.
  [[nodiscard]] bool roundTrip(std::chrono::milliseconds limit = kAnswerLimit);

 private:
  using Deadline = std::chrono::steady_clock::time_point;
  [[nodiscard]] bool readEvents(Deadline deadline);

  wl_display* const _connection;
  wl_event_queue* const _queue;
  wl_display* const _display;
};

}  // namespace pelmora::wayland
