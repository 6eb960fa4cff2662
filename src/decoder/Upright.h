#pragma once

#include "decoder/Raster.h"

#include <span>

namespace pelmora::decoder {

/// The size that a picture has when it stands upright: sides change places from orientation 5 on.
[[nodiscard]] PixelSize uprightSize(const PixelSize& stored, int orientation);

/// Writes an sRGB picture (3 or 4 channels of 8 bits, alpha not multiplied in) as the compositor
/// wants it: upright, blue green red alpha, premultiplied, into `out` of exactly 4 bytes a pixel.
/// Gives back whether every pixel is opaque.
bool writeUpright(const Raster& picture, int orientation, std::span<std::uint8_t> out);

}  // namespace pelmora::decoder
