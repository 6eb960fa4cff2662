#include "decoder/PictureLimits.h"

#include <algorithm>
#include <string>

namespace pelmora::decoder {

namespace {

Error tooLarge(const PixelSize& size, std::int64_t limit) {
  return Error{"it is " + std::to_string(size.width) + " × " + std::to_string(size.height) +
               " pixels, and no more than " + std::to_string(limit / 1'000'000) +
               " megapixels of its kind are read"};
}

}  // namespace

Status checkPictureLimits(const PictureHeader& header) {
  const auto& [width, height] = header.size;
  if (width <= 0 || height <= 0) return Error{"it has no pixels"};
  const std::int64_t pixels = std::int64_t{width} * height;
  std::int64_t limit = std::min(kMaxPixels, kMaxStreamedBytes / header.bytesPerPixel);
  if (header.heldBytesPerPixel > 0) {
    limit = std::min(limit, kMaxHeldBytes / header.heldBytesPerPixel);
  }
  if (pixels > limit) return tooLarge(header.size, limit);
  return Done{};
}

}  // namespace pelmora::decoder
