#pragma once

#include "platform/Image.h"

#include <array>
#include <cstdint>
#include <memory>

namespace pelmora::cards {

/// A picture of one colour, given as it is in memory: premultiplied blue, green, red, alpha.
inline platform::Image plainPicture(const Size& points, const PixelSize& size,
                                    const std::array<std::uint8_t, 4>& pixel) {
  auto pixels = std::make_shared<platform::Pixels>();
  pixels->size = size;
  pixels->opaque = pixel[3] == 255;
  const int count = size.width * size.height;
  for (int i = 0; i < count; ++i) {
    pixels->bytes.insert(pixels->bytes.end(), pixel.begin(), pixel.end());
  }
  return {points, pixels};
}

}  // namespace pelmora::cards
