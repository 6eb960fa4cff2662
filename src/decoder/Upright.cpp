#include "decoder/Upright.h"

#include <algorithm>
#include <cassert>

namespace pelmora::decoder {

namespace {

constexpr int kBlock = 32;

/// Where the pixels of the upright picture lie in the stored one, counted in pixels.
struct Walk {
  std::ptrdiff_t start = 0;
  std::ptrdiff_t right = 1;
  std::ptrdiff_t down = 0;
};

Walk walkOf(const PixelSize& stored, int orientation) {
  const std::ptrdiff_t width = stored.width;
  const std::ptrdiff_t lastColumn = width - 1;
  const std::ptrdiff_t lastRow = width * (stored.height - 1);
  switch (orientation) {
    case 2:
      return {lastColumn, -1, width};
    case 3:
      return {lastRow + lastColumn, -1, -width};
    case 4:
      return {lastRow, 1, -width};
    case 5:
      return {0, width, 1};
    case 6:
      return {lastRow, -width, 1};
    case 7:
      return {lastRow + lastColumn, -width, -1};
    case 8:
      return {lastColumn, width, -1};
    default:
      return {0, 1, width};
  }
}

std::uint8_t multiplied(int channel, int alpha) {
  return static_cast<std::uint8_t>((channel * alpha + 127) / 255);
}

template <int kChannels>
bool writePixels(const std::uint8_t* from, std::ptrdiff_t step, int count, std::uint8_t* to) {
  int alphas = 255;
  for (int i = 0; i < count; ++i, from += step, to += 4) {
    const int alpha = kChannels == 4 ? from[3] : 255;
    alphas &= alpha;
    to[0] = kChannels == 4 ? multiplied(from[2], alpha) : from[2];
    to[1] = kChannels == 4 ? multiplied(from[1], alpha) : from[1];
    to[2] = kChannels == 4 ? multiplied(from[0], alpha) : from[0];
    to[3] = static_cast<std::uint8_t>(alpha);
  }
  return alphas == 255;
}

/// Block by block, so that the stored rows that a turned picture's row crosses stay in the cache.
template <int kChannels>
bool writeBlocks(const std::uint8_t* from, const Walk& walk, const PixelSize& size,
                 std::uint8_t* out) {
  bool opaque = true;
  const bool isTurned = walk.right != 1 && walk.right != -1;
  const int blockWidth = isTurned ? kBlock : size.width;
  for (int top = 0; top < size.height; top += kBlock) {
    const int bottom = std::min(top + kBlock, size.height);
    for (int left = 0; left < size.width; left += blockWidth) {
      const int count = std::min(blockWidth, size.width - left);
      for (int y = top; y < bottom; ++y) {
        const std::ptrdiff_t at = walk.start + y * walk.down + left * walk.right;
        std::uint8_t* to = out + 4 * (std::ptrdiff_t{y} * size.width + left);
        opaque &= writePixels<kChannels>(from + at * kChannels, walk.right * kChannels, count, to);
      }
    }
  }
  return opaque;
}

}  // namespace

PixelSize uprightSize(const PixelSize& stored, int orientation) {
  return orientation >= 5 && orientation <= 8 ? PixelSize{stored.height, stored.width} : stored;
}

bool writeUpright(const Raster& picture, int orientation, std::span<std::uint8_t> out) {
  const RowFormat& format = picture.format;
  assert(format.model == ColorModel::rgb && format.bytesPerChannel == 1 && !picture.premultiplied);
  const PixelSize size = uprightSize(format.size, orientation);
  assert(out.size() ==
         4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
  const auto* from = reinterpret_cast<const std::uint8_t*>(picture.bytes.data());
  const Walk walk = walkOf(format.size, orientation);
  return format.hasAlpha ? writeBlocks<4>(from, walk, size, out.data())
                         : writeBlocks<3>(from, walk, size, out.data());
}

}  // namespace pelmora::decoder
