#include "platform/linux/Deadline.h"

#include <poll.h>
#include <sys/timerfd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace pelmora::platform {

Deadline::Deadline(std::chrono::milliseconds fromNow)
    : _timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
  const auto time = std::max(fromNow, std::chrono::milliseconds(1));  // 0 would switch it off
  itimerspec once{};
  once.it_value = {time.count() / 1000, time.count() % 1000 * 1'000'000};
  if (_timer.isOpen() && timerfd_settime(_timer.get(), 0, &once, nullptr) != 0) _timer = {};
}

bool Deadline::waitFor(int descriptor) const {
  if (!_timer.isOpen()) return false;
  std::array<pollfd, 2> watched{pollfd{descriptor, POLLIN, 0}, pollfd{_timer.get(), POLLIN, 0}};
  int ready = 0;
  do {
    ready = poll(watched.data(), watched.size(), -1);
  } while (ready < 0 && errno == EINTR);
  return ready > 0 && watched[0].revents != 0;
}

bool Deadline::isOver() const {
  if (!_timer.isOpen()) return true;
  pollfd watched{_timer.get(), POLLIN, 0};
  return poll(&watched, 1, 0) == 1;
}

void Deadline::endNow() const {
  itimerspec once{};
  once.it_value.tv_nsec = 1;  // 0 would switch it off
  if (_timer.isOpen()) timerfd_settime(_timer.get(), 0, &once, nullptr);
}

}  // namespace pelmora::platform
