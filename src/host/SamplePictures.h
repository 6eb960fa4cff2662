#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

namespace pelmora::host {

/// Paints a few pictures into a folder, for a user who has none: landscapes and patterns, the same
/// on every machine. Makes the folder if it is missing (not the ones above it) and leaves files
/// that are there as they are; a picture appears whole or not at all. Thread: any. Errors: names
/// the file or folder that could not be written.
[[nodiscard]] Status paintSamplePictures(const FilePath& folder);

}  // namespace pelmora::host
