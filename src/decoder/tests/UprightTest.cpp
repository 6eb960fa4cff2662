#include "decoder/Upright.h"

#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

/// A picture whose pixels are numbered from 1 in red, row by row; green and blue are 10 and 20.
Raster numbered(const PixelSize& size) {
  Raster raster;
  raster.format = {.size = size};
  for (int i = 0; i < size.width * size.height; ++i) {
    for (const int value : {i + 1, 10, 20}) raster.bytes.push_back(static_cast<std::byte>(value));
  }
  return raster;
}

/// The numbers as they lie once upright.
std::vector<int> uprightNumbers(const PixelSize& size, int orientation) {
  std::vector<std::uint8_t> out(std::size_t(size.width * size.height) * 4);
  EXPECT_TRUE(writeUpright(numbered(size), orientation, out));
  std::vector<int> numbers;
  for (std::size_t i = 0; i < out.size(); i += 4) {
    EXPECT_EQ(out[i], 20);
    EXPECT_EQ(out[i + 1], 10);
    EXPECT_EQ(out[i + 3], 255);
    numbers.push_back(out[i + 2]);
  }
  return numbers;
}

std::vector<std::uint8_t> withAlpha(int red, int green, int blue, int alpha, bool opaque) {
  Raster raster;
  raster.format = {.size = {1, 1}, .hasAlpha = true};
  for (const int value : {red, green, blue, alpha}) {
    raster.bytes.push_back(static_cast<std::byte>(value));
  }
  std::vector<std::uint8_t> out(4);
  EXPECT_EQ(writeUpright(raster, 1, out), opaque);
  return out;
}

}  // namespace

TEST(Upright, changesTheSidesFromTheFifthOrientationOn) {
  for (int orientation = 1; orientation <= 4; ++orientation) {
    EXPECT_EQ(uprightSize({3, 2}, orientation), (PixelSize{3, 2}));
  }
  for (int orientation = 5; orientation <= 8; ++orientation) {
    EXPECT_EQ(uprightSize({3, 2}, orientation), (PixelSize{2, 3}));
  }
  EXPECT_EQ(uprightSize({3, 2}, 9), (PixelSize{3, 2}));
}

TEST(Upright, turnsAndFlipsEveryOrientation) {
  const PixelSize size{3, 2};  // 1 2 3 above 4 5 6
  EXPECT_EQ(uprightNumbers(size, 1), (std::vector{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(uprightNumbers(size, 2), (std::vector{3, 2, 1, 6, 5, 4}));
  EXPECT_EQ(uprightNumbers(size, 3), (std::vector{6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(uprightNumbers(size, 4), (std::vector{4, 5, 6, 1, 2, 3}));
  EXPECT_EQ(uprightNumbers(size, 5), (std::vector{1, 4, 2, 5, 3, 6}));
  EXPECT_EQ(uprightNumbers(size, 6), (std::vector{4, 1, 5, 2, 6, 3}));
  EXPECT_EQ(uprightNumbers(size, 7), (std::vector{6, 3, 5, 2, 4, 1}));
  EXPECT_EQ(uprightNumbers(size, 8), (std::vector{3, 6, 2, 5, 1, 4}));
}

TEST(Upright, turnsPicturesOfManyBlocks) {
  const PixelSize size{70, 45};
  Raster picture;
  picture.format = {.size = size};
  const auto value = [](int x, int y) { return static_cast<std::byte>(x * 31 + y * 7); };
  for (int y = 0; y < 45; ++y) {
    for (int x = 0; x < 70; ++x) picture.bytes.insert(picture.bytes.end(), 3, value(x, y));
  }
  std::vector<std::uint8_t> out(70 * 45 * 4);
  writeUpright(picture, 6, out);
  for (int y = 0; y < 70; ++y) {
    for (int x = 0; x < 45; ++x) {
      ASSERT_EQ(out[std::size_t(y * 45 + x) * 4], std::to_integer<int>(value(y, 44 - x)));
    }
  }
}

TEST(Upright, turnsPicturesOfOneColumn) {
  EXPECT_EQ(uprightNumbers({1, 3}, 6), (std::vector{3, 2, 1}));
  EXPECT_EQ(uprightNumbers({1, 3}, 5), (std::vector{1, 2, 3}));
  EXPECT_EQ(uprightNumbers({3, 1}, 8), (std::vector{3, 2, 1}));
}

TEST(Upright, multipliesByAlphaAndTellsWhetherAnyIsTransparent) {
  EXPECT_EQ(withAlpha(255, 100, 50, 255, true), (std::vector<std::uint8_t>{50, 100, 255, 255}));
  EXPECT_EQ(withAlpha(255, 100, 50, 51, false), (std::vector<std::uint8_t>{10, 20, 51, 51}));
  EXPECT_EQ(withAlpha(255, 100, 50, 0, false), (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

}  // namespace pelmora::decoder
