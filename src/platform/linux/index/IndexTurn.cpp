#include "platform/linux/index/IndexTurn.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace pelmora::platform {

namespace {

constexpr int kTries = 50;
constexpr int kPause = 20;  // milliseconds

}  // namespace

IndexTurn::IndexTurn(FilePath file, std::function<bool()> isOver)
    : _file(std::move(file)), _isOver(std::move(isOver)) {}

IndexTurn::Held::~Held() {
  if (_descriptor >= 0) flock(_descriptor, LOCK_UN);
}

IndexTurn::Held IndexTurn::take() {
  if (!_descriptor.isOpen() && !_file.empty()) {
    _descriptor = FileDescriptor(
        ::open(_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  }
  if (!_descriptor.isOpen()) return Held(-1);
  // The system's own waiting for a lock knows no limit of time.
  for (int i = 0; i < kTries && !_isOver(); ++i) {
    if (flock(_descriptor.get(), LOCK_EX | LOCK_NB) == 0) return Held(_descriptor.get());
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    poll(nullptr, 0, kPause);
  }
  return Held(-1);
}

}  // namespace pelmora::platform
