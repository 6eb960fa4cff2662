#pragma once

#include "platform/FileDescriptor.h"
#include "platform/linux/MountTable.h"

#include <functional>
#include <memory>
#include <mutex>

namespace pelmora::platform {

/// What is mounted where, read anew only when something was mounted or unmounted: reading takes as
/// long as a dozen looks at files. Thread: any.
class CurrentMounts {
 public:
  using Reader = std::function<MountTable()>;

  /// As this process sees it.
  CurrentMounts();
  /// As `read` has it, which is asked each time.
  explicit CurrentMounts(Reader read) : _read(std::move(read)) {}

  /// Never null, and the same one until something changes.
  [[nodiscard]] std::shared_ptr<const MountTable> table();

 private:
  [[nodiscard]] bool hasChanged();

  const Reader _read;
  FileDescriptor _mountInfo;  // tells of changes; closed where the reader is another's
  std::mutex _mutex;          // guards the table
  std::shared_ptr<const MountTable> _table;
};

}  // namespace pelmora::platform
