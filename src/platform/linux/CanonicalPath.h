#pragma once

#include "shared/FilePath.h"

#include <optional>

namespace pelmora::platform {

/// The path without symbolic links; nullopt when it leads nowhere.
[[nodiscard]] std::optional<FilePath> canonicalPath(const FilePath& path);

}  // namespace pelmora::platform
