#include "platform/linux/FileLock.h"

#include <poll.h>
#include <sys/file.h>

#include <cerrno>

namespace pelmora::platform {

bool lockFile(int descriptor, const Patience& patience) {
  constexpr std::chrono::milliseconds kPause{20};
  for (auto left = patience.atMost;; left -= kPause) {
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return false;
    if (left <= left.zero() || patience.isOver()) break;
    ::poll(nullptr, 0, static_cast<int>(kPause.count()));
  }
  errno = EWOULDBLOCK;
  return false;
}

}  // namespace pelmora::platform
