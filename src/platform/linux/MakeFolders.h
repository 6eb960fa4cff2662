#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

namespace pelmora::platform {

/// Makes a folder and those above it that are missing, for the user alone. Something else that lies
/// at the path is left there, and is no error. Thread: any.
[[nodiscard]] Status makeFolders(const FilePath& folder);

}  // namespace pelmora::platform
