#pragma once

#include "decoder/tests/PaintedPicture.h"
#include "decoder/VideoColors.h"

#include <string>

namespace pelmora::decoder {

/// How a JPEG XL file is to be made, for what libvips does not write.
struct JxlWish {
  VideoColors colors = {.primaries = 1, .transfer = 13};
  bool isLossless = true;
};

/// The bytes of a file whose pixels are those of `picture`, RGB of 16 bits or of fractions.
/// Errors: it throws, which fails the test.
[[nodiscard]] std::string encodedJxl(const VipsPointer& picture, const JxlWish& wish);

}  // namespace pelmora::decoder
