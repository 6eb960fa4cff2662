#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <cstdint>
#include <span>

namespace pelmora::platform {

/// Replaces a file whole or not at all, also when the power fails: a temporary file beside it (mode
/// 0600, locked while it is written), flushed, renamed, and the folder flushed. On an error the old
/// file stays. Thread: any.
[[nodiscard]] Status writeAtomically(const FilePath& file, std::span<const std::uint8_t> bytes);

/// The same, for a file that others made: its links are followed, and it keeps its mode and, where
/// that can be, its owner. One that is not there is made with mode 0600.
[[nodiscard]] Status replaceContents(const FilePath& file, std::span<const std::uint8_t> bytes);

/// Removes the temporary files that killed writers of `file` left beside it; those of writers at
/// work stay. Thread: any. Errors: none; what cannot be removed stays.
void sweepTemporaryFiles(const FilePath& file);

}  // namespace pelmora::platform
