#include "platform/linux/index/IndexTurn.h"

#include <fcntl.h>
#include <sys/file.h>

#include <utility>

namespace pelmora::platform {

IndexTurn::IndexTurn(FilePath file, const Clock& clock, Patience patience)
    : _file(std::move(file)), _clock(clock), _patience(std::move(patience)) {}

IndexTurn::Held::~Held() {
  if (_descriptor >= 0) flock(_descriptor, LOCK_UN);
}

IndexTurn::Held IndexTurn::take() {
  if (!_descriptor.isOpen() && !_file.empty()) {
    _descriptor = FileDescriptor(
        ::open(_file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  }
  if (!_descriptor.isOpen()) return Held(-1);
  const double now = _clock.mediaTime();
  const Patience none{.atMost = std::chrono::milliseconds(0)};
  if (lockFile(_descriptor.get(), now < _waitsAgain ? none : _patience)) {
    _waitsAgain = 0;
    return Held(_descriptor.get());
  }
  if (now >= _waitsAgain) _waitsAgain = _clock.mediaTime() + kUnwaited;
  return Held(-1);
}

}  // namespace pelmora::platform
