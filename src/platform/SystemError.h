#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <string>

namespace pelmora::platform {

/// What an error number means, in the C library's words.
[[nodiscard]] std::string systemErrorText(int errorNumber);

/// "path: what the error number means".
[[nodiscard]] Error systemError(const FilePath& path, int errorNumber);

}  // namespace pelmora::platform
