#pragma once

#include "shared/Result.h"

#include <cstddef>
#include <string>

namespace pelmora::platform {

/// Reads a regular file of at most `limit` bytes, whole; `name` is taken from the folder open as
/// `folderDescriptor` (AT_FDCWD for a path). Never waits for a pipe or a device: those are errors,
/// as are files that are larger. Thread: any.
[[nodiscard]] Result<std::string> readSmallFile(int folderDescriptor, const char* name,
                                                std::size_t limit);

}  // namespace pelmora::platform
