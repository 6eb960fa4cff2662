#pragma once

#include "shared/FilePath.h"

namespace pelmora::host {

// Where the program keeps the user's own files, by the environment of the process. Without a home
// the paths are under one that does not exist: nothing is read there, and what cannot be written is
// said.

/// The user's own file labels.
[[nodiscard]] FilePath labelsPath();
/// Where sample pictures are painted for a user who has none.
[[nodiscard]] FilePath samplesPath();

}  // namespace pelmora::host
