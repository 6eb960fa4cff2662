#pragma once

#include "platform/Files.h"

namespace pelmora::platform {

/// Reads the visible entries of the folder open as `descriptor`, from its beginning, into
/// `listing`. 0, or the error number that ended it. Thread: any.
[[nodiscard]] int readVisibleEntries(int descriptor, Listing& listing);

/// Whether `name`, a regular file in the folder open as `folderDescriptor` (AT_FDCWD for a path),
/// is a desktop entry that links to a `file:` URL.
[[nodiscard]] bool isDesktopLink(int folderDescriptor, const char* name);

}  // namespace pelmora::platform
