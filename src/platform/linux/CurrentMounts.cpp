#include "platform/linux/CurrentMounts.h"

#include <fcntl.h>
#include <poll.h>

namespace pelmora::platform {

CurrentMounts::CurrentMounts()
    : CurrentMounts(&MountTable::ofThisProcess,
                    FileDescriptor(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))) {}

std::shared_ptr<const MountTable> CurrentMounts::table() {
  const std::lock_guard lock(_mutex);
  if (hasChanged() || !_table || _table->mounts().empty()) {
    _table = std::make_shared<const MountTable>(_read());
  }
  return _table;
}

/// The kernel tells it once to whoever holds the file open.
bool CurrentMounts::hasChanged() {
  if (!_changes.isOpen()) return true;
  pollfd change{_changes.get(), POLLPRI, 0};
  return ::poll(&change, 1, 0) > 0 && (change.revents & (POLLPRI | POLLERR)) != 0;
}

}  // namespace pelmora::platform
