#pragma once

#include "platform/DecodeProtocol.h"
#include "shared/Geometry.h"
#include "shared/Result.h"

#include <cstdint>

namespace pelmora::decoder {

/// What a picture's header says about the work of decoding it.
struct PictureHeader {
  PixelSize size;
  int bytesPerPixel = 3;
  /// Memory that the decoder takes for each pixel, for a format that must be held whole to be read;
  /// 0 where a picture is read row by row.
  int heldBytesPerPixel = 0;
};

/// The most that is decoded. A picture above a limit is an attack, or a panorama far beyond what a
/// screen shows: a few hundred bytes of a file can ask for gigabytes.
/// Measured: 50 megapixels take 0.1 s as JPEG, 1 s as PNG, 1 s as AVIF, 1.5 s as HEIC and 6 s as
/// lossless JPEG XL, so that the slowest picture within the limits takes about eight seconds.
constexpr std::int64_t kMaxPixels = platform::kMaxStoredPixels;
constexpr std::int64_t kMaxStreamedBytes = 2'000'000'000;
constexpr std::int64_t kMaxHeldBytes = 750'000'000;

/// Fails, with the reason, for a picture that is larger than any of the limits.
[[nodiscard]] Status checkPictureLimits(const PictureHeader& header);

}  // namespace pelmora::decoder
