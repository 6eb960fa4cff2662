#include "decoder/BoxAverage.h"

#include <gtest/gtest.h>

#include <vector>

namespace pelmora::decoder {

namespace {

template <typename Sample>
std::vector<Sample> averages(const RowFormat& format, const PixelSize& box,
                             const std::vector<Sample>& picture) {
  BoxAverage boxes(format, box);
  std::vector<Sample> all;
  std::vector<Sample> out(boxes.format().samplesPerRow());
  for (int y = 0; y < format.size.height; ++y) {
    const auto row =
        std::span(picture).subspan(std::size_t(y) * format.samplesPerRow(), format.samplesPerRow());
    if (boxes.push(std::as_bytes(row), std::as_writable_bytes(std::span(out)))) {
      all.insert(all.end(), out.begin(), out.end());
    }
  }
  return all;
}

RowFormat grey(int width, int height, int bytes = 1) {
  return {.size = {width, height}, .model = ColorModel::grey, .bytesPerChannel = bytes};
}

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

}  // namespace

TEST(BoxAverage, averagesWholeBoxes) {
  EXPECT_EQ(averages(grey(4, 2), {2, 2}, Bytes{0, 10, 1, 1, 20, 30, 1, 2}), (Bytes{15, 1}));
}

TEST(BoxAverage, roundsToTheNearest) {
  EXPECT_EQ(averages(grey(3, 1), {3, 1}, Bytes{1, 1, 0}), (Bytes{1}));
  EXPECT_EQ(averages(grey(3, 1), {3, 1}, Bytes{1, 0, 0}), (Bytes{0}));
  EXPECT_EQ(averages(grey(2, 1), {2, 1}, Bytes{255, 254}), (Bytes{255}));
}

TEST(BoxAverage, fillsTheBoxesAtTheEdgeWithThePixelsThere) {
  EXPECT_EQ(averages(grey(3, 3), {2, 2}, Bytes{0, 0, 10, 0, 0, 30, 40, 80, 100}),
            (Bytes{0, 20, 60, 100}));
}

TEST(BoxAverage, keepsChannelsApart) {
  const RowFormat rgb{.size = {3, 1}};
  EXPECT_EQ(averages(rgb, {2, 1}, Bytes{0, 10, 20, 2, 30, 220, 7, 8, 9}),
            (Bytes{1, 20, 120, 7, 8, 9}));
}

TEST(BoxAverage, makesBoxesLargerThanThePicture) {
  EXPECT_EQ(averages(grey(2, 1), {64, 64}, Bytes{255, 255}), (Bytes{255}));
}

TEST(BoxAverage, keepsAPlainColourInBoxesOfEverySize) {
  for (int side = 1; side <= BoxAverage::kMaxSide; ++side) {
    const Bytes bytes(70 * 70, 255);
    for (const auto value : averages(grey(70, 70), {side, side}, bytes)) ASSERT_EQ(value, 255);
    const Words words(70 * 70, 65535);
    for (const auto value : averages(grey(70, 70, 2), {side, side}, words)) {
      ASSERT_EQ(value, 65535);
    }
  }
}

TEST(BoxAverage, averagesSixteenBits) {
  EXPECT_EQ(averages(grey(2, 2, 2), {2, 2}, Words{65535, 65535, 65534, 65534}), (Words{65535}));
  EXPECT_EQ(averages(grey(2, 1, 2), {2, 1}, Words{1000, 3001}), (Words{2001}));
}

}  // namespace pelmora::decoder
