#pragma once

#include "shared/FilePath.h"

#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// The bytes of an extended attribute, links followed; nullopt when there is none, or it cannot be
/// read, or the filesystem keeps none. The kernel allows 64 KiB. Thread: any.
[[nodiscard]] std::optional<std::string> extendedAttribute(const FilePath& file, const char* name);
/// The same of an open file.
[[nodiscard]] std::optional<std::string> extendedAttribute(int file, const char* name);

/// The names of an open file's extended attributes, as far as a user may set them; of most files
/// there are none. Thread: any.
[[nodiscard]] std::vector<std::string> extendedAttributeNames(int file);

}  // namespace pelmora::platform
