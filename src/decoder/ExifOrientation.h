#pragma once

#include <cstddef>
#include <span>

namespace pelmora::decoder {

/// How a picture has to be turned to stand upright, 1 to 8, by its EXIF data (as it stands in a
/// JPEG's APP1 segment, from "Exif" on). 1 where that is broken, or does not say.
[[nodiscard]] int exifOrientation(std::span<const unsigned char> exif);

}  // namespace pelmora::decoder
