#pragma once

#include "shared/FilePath.h"

#include <optional>
#include <string>

namespace pelmora::platform {

/// The bytes of an extended attribute, links followed; nullopt when there is none, or it cannot be
/// read, or the filesystem keeps none. The kernel allows 64 KiB. Thread: any.
[[nodiscard]] std::optional<std::string> extendedAttribute(const FilePath& file, const char* name);

}  // namespace pelmora::platform
