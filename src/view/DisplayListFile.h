#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <string>
#include <vector>

namespace pelmora::view {

// The file that tells which images are on one screen at this moment: their paths, oldest first,
// each followed by a carriage return, in UTF-16 of the processor's byte order with a byte-order
// mark.

/// Makes the file, empty; an older one is emptied.
[[nodiscard]] Status createDisplayListFile(const FilePath& path);

/// Writes the file anew. False when it cannot be opened; it is never made here.
bool writeDisplayListFile(const FilePath& path, const std::vector<FilePath>& images);

/// UTF-8 to UTF-16 with a byte-order mark; what is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::u16string utf16WithByteOrderMark(std::string_view utf8);

}  // namespace pelmora::view
