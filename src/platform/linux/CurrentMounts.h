#pragma once

#include "platform/FileDescriptor.h"
#include "platform/linux/MountTable.h"

#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace pelmora::platform {

/// What is mounted where, read anew only when something was mounted or unmounted: reading takes as
/// long as a dozen looks at files. That a folder above a mount was renamed is not noticed until
/// then, as the kernel does not tell. Thread: any.
class CurrentMounts {
 public:
  using Reader = std::function<MountTable()>;

  /// As this process sees it.
  CurrentMounts();
  /// As `read` has it, whenever `changes` polls POLLPRI; each time where that is not open.
  explicit CurrentMounts(Reader read, FileDescriptor changes = {})
      : _read(std::move(read)), _changes(std::move(changes)) {}

  /// Never null, and the same one until something changes. Empty when it cannot be told; it is
  /// tried anew then.
  [[nodiscard]] std::shared_ptr<const MountTable> table();

 private:
  [[nodiscard]] bool hasChanged();

  const Reader _read;
  std::mutex _mutex;  // guards all below, and that a change is told to one who reads
  const FileDescriptor _changes;
  std::shared_ptr<const MountTable> _table;
};

}  // namespace pelmora::platform
