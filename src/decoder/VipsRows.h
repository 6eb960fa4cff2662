#pragma once

#include "decoder/RowReader.h"
#include "decoder/VipsLibrary.h"

#include <memory>

namespace pelmora::decoder {

/// Opens a picture of any format that libvips reads, at a reduced size where the format offers one
/// that is well above `longestSide`. An embedded preview is never taken for the picture.
/// `descriptor` is at its begin. `startVips` comes first.
/// Colours that are neither grey, RGB nor CMYK of 8 or 16 bits are converted to those.
/// HDR pictures come with a profile made from what their file says of primaries and transfer.
/// Errors: unknown formats, limits (`PictureLimits.h`), damage; one short line.
/// Thread: one. Memory: a few rows, or the picture whole where its format demands it.
[[nodiscard]] Result<std::unique_ptr<RowReader>> openWithVips(int descriptor, int longestSide);

}  // namespace pelmora::decoder
