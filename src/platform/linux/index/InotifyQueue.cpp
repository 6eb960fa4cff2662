#include "platform/linux/index/InotifyQueue.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace pelmora::platform {

namespace {

constexpr std::size_t kBlockBytes = 64 * 1024;
/// Whoever makes events as fast as they are read must not keep the reader for ever.
constexpr int kMostBlocks = 16;

/// Extended attributes come as IN_ATTRIB. That a folder is removed comes as IN_IGNORED, unasked.
constexpr std::uint32_t kMask = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM |
                                IN_DELETE | IN_ATTRIB | IN_MOVE_SELF | IN_ONLYDIR | IN_EXCL_UNLINK;

std::optional<InotifyQueue::Event> eventOf(const inotify_event& header) {
  using Kind = InotifyQueue::Kind;
  if ((header.mask & IN_Q_OVERFLOW) != 0) return InotifyQueue::Event{-1, Kind::lost};
  if ((header.mask & IN_IGNORED) != 0) return InotifyQueue::Event{header.wd, Kind::gone};
  if ((header.mask & IN_MOVE_SELF) != 0) return InotifyQueue::Event{header.wd, Kind::moved};
  // What happens to a subfolder is no matter of the files beside it.
  const bool isOfSubfolder = (header.mask & IN_ISDIR) != 0 && header.len > 0;
  if (isOfSubfolder) return std::nullopt;
  return InotifyQueue::Event{header.wd, Kind::changed};
}

}  // namespace

InotifyQueue::InotifyQueue() : _descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

std::optional<InotifyQueue::Watch> InotifyQueue::add(const FilePath& folder) const {
  if (!_descriptor.isOpen()) return std::nullopt;
  const int watch = ::inotify_add_watch(_descriptor.get(), folder.c_str(), kMask);
  return watch < 0 ? std::nullopt : std::optional(watch);
}

void InotifyQueue::remove(Watch watch) const {
  if (_descriptor.isOpen()) (void)::inotify_rm_watch(_descriptor.get(), watch);
}

void InotifyQueue::read(const std::function<void(const Event&)>& take) const {
  std::array<std::byte, kBlockBytes> block;
  for (int i = 0; i < kMostBlocks && _descriptor.isOpen(); ++i) {
    const ssize_t got = ::read(_descriptor.get(), block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return;
    auto bytes = std::span<const std::byte>(block).first(static_cast<std::size_t>(got));
    while (const std::optional<Event> event = takeEvent(bytes)) take(*event);
  }
}

std::optional<InotifyQueue::Event> InotifyQueue::takeEvent(std::span<const std::byte>& bytes) {
  inotify_event header{};
  while (bytes.size() >= sizeof header) {
    std::memcpy(&header, bytes.data(), sizeof header);
    const std::size_t rest = bytes.size() - sizeof header;
    if (header.len > rest) return std::nullopt;
    bytes = bytes.last(rest - header.len);
    if (const std::optional<Event> event = eventOf(header)) return event;
  }
  return std::nullopt;
}

}  // namespace pelmora::platform
