#pragma once

#include "decoder/RowReader.h"
#include "decoder/VipsPointers.h"

namespace pelmora::decoder {

/// A picture whose pixels are of one of the kinds that a `RowFormat` names.
struct PlainPixels {
  ImagePointer image;
  RowFormat format;
  std::string profile;  // of these pixels; empty: sRGB
};

/// Brings a picture of any kind that libvips reads to grey, RGB or CMYK of 8 or 16 bits with at
/// most an alpha channel, row by row as its rows are asked for. Numbers with a fraction are taken
/// from 0 to 1 and become 16 bits; colours measured in other ways (Lab, XYZ) become sRGB. Errors: a
/// kind that cannot be shown (complex numbers); what libvips says.
[[nodiscard]] Result<PlainPixels> plainPixels(ImagePointer image);

}  // namespace pelmora::decoder
