#pragma once

#include "decoder/RowReader.h"

#include <memory>

namespace pelmora::decoder {

/// Opens a JPEG of which `descriptor` is at its begin, to be read at the smallest of the sizes that
/// its decoder makes for little (an eighth, a quarter, a half, the whole) that leaves the filter
/// enough to do for `longestSide`. RGB, YCbCr and grey, baseline and progressive. Null, without an
/// error, for one of another kind (CMYK): that is for `openWithVips`. Orientation is EXIF's, the
/// profile is whole or left out. Errors: a file that is cut short, or whose data is damaged so that
/// it would show, is refused. Thread: one. Memory: a few rows; for a progressive picture its
/// coefficients, within the limits.
[[nodiscard]] Result<std::unique_ptr<RowReader>> openJpeg(int descriptor, int longestSide);

}  // namespace pelmora::decoder
