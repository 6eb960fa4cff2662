#pragma once

#include "platform/Image.h"

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace pelmora::cards {

/// A picture of one colour, given as it is in memory: premultiplied blue, green, red, alpha.
inline platform::Image plainPicture(const Size& points, const PixelSize& size,
                                    const std::array<std::uint8_t, 4>& pixel) {
  std::vector<std::uint8_t> bytes;
  const int count = size.width * size.height;
  for (int i = 0; i < count; ++i) bytes.insert(bytes.end(), pixel.begin(), pixel.end());
  return {points, std::make_shared<const platform::Pixels>(
                      platform::Pixels{size, pixel[3] == 255, std::move(bytes)})};
}

}  // namespace pelmora::cards
