#pragma once

#include "platform/UserFolders.h"

namespace pelmora::host {

/// Where the index of metadata is kept: beside the folder cache, in a folder that is made here.
/// Empty where there is no place for it: then it is kept in memory. Thread: any.
[[nodiscard]] FilePath indexFile(const platform::UserFolders& folders);

}  // namespace pelmora::host
