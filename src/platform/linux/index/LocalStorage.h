#pragma once

#include "shared/FilePath.h"

namespace pelmora::platform {

/// Whether a folder, links followed, is on a disk or in the memory of this machine, so that nothing
/// is changed there without its kernel. False when it is not known, or there is no folder. Takes a
/// few microseconds where the file system answers at once. Thread: any.
[[nodiscard]] bool isOnLocalStorage(const FilePath& folder);

}  // namespace pelmora::platform
