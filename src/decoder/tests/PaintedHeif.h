#pragma once

#include "decoder/tests/PaintedPicture.h"
#include "decoder/VideoColors.h"

#include <string>

namespace pelmora::decoder {

/// How a HEIC or AVIF file is to be made, for what libvips does not write.
struct HeifWish {
  bool isAvif = false;
  VideoColors colors = {};             // in an 'nclx' box
  const VipsImage* preview = nullptr;  // embedded as a thumbnail, 8 bits
};

/// The bytes of a file whose pixels are those of `picture`, RGB of 8 bits, or of 16 bits that are
/// stored as 10 (HEIC) or 8 (AVIF). Errors: it throws, which fails the test.
[[nodiscard]] std::string encodedHeif(const VipsPointer& picture, const HeifWish& wish);

}  // namespace pelmora::decoder
