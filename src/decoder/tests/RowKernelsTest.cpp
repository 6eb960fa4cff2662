#include "decoder/RowKernels.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace pelmora::decoder {

namespace {

constexpr std::int16_t kOne = 1 << kWeightBits;

template <typename Sample>
std::vector<std::int16_t> mixed(const std::vector<Sample>& upper, const std::vector<Sample>& lower,
                                std::array<std::int16_t, 2> weights) {
  const std::array rows{reinterpret_cast<const std::byte*>(upper.data()),
                        reinterpret_cast<const std::byte*>(lower.data())};
  std::vector<std::int16_t> out(upper.size());
  plainRowKernels(sizeof(Sample)).mixRows(rows, weights.data(), upper.size(), out.data());
  return out;
}

template <typename Sample>
std::vector<Sample> mixedPixels(const std::vector<std::int16_t>& row, int channels,
                                const LanczosWeights& weights) {
  std::vector<Sample> out(weights.first.size() * std::size_t(channels));
  plainRowKernels(sizeof(Sample))
      .mixPixels(row.data(), channels, weights, reinterpret_cast<std::byte*>(out.data()));
  return out;
}

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;
using Mixed = std::vector<std::int16_t>;

}  // namespace

TEST(RowKernels, mixRowsByTheirWeights) {
  EXPECT_EQ(mixed(Bytes{0, 100, 255}, Bytes{255, 200, 255}, {kOne / 4, kOne / 4 * 3}),
            (Mixed{12240, 175 * 64, 255 * 64}));
  EXPECT_EQ(mixed(Words{0, 65535}, Words{0, 32768}, {kOne, 0}), (Mixed{-16384, 16384}));
}

TEST(RowKernels, keepWhatTheFilterThrowsBeyondBlackAndWhite) {
  EXPECT_EQ(mixed(Bytes{255, 0}, Bytes{0, 255}, {kOne / 4 * 5, -kOne / 4}), (Mixed{20400, -4080}));
}

TEST(RowKernels, mixPixelsOfEveryChannelApart) {
  LanczosWeights half;
  half.taps = 4;
  half.first = {0, 2};
  half.counts = {2, 2};
  half.weights = {kOne / 2, kOne / 2, 0, 0, kOne, 0, 0, 0};
  const Mixed row{0, 64, 640, 128, 192, 640, 6400, 64, 0, 1, 1, 1, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(mixedPixels<std::uint8_t>(row, 3, half), (Bytes{1, 2, 10, 100, 1, 0}));
}

TEST(RowKernels, cutOffBeyondBlackAndWhiteAtTheEnd) {
  LanczosWeights same;
  same.taps = 4;
  same.first = {0, 1, 2};
  same.counts = {1, 1, 1};
  same.weights = {kOne, 0, 0, 0, kOne, 0, 0, 0, kOne, 0, 0, 0};
  const Mixed row{-640, 20000, 31, 0, 0, 0};
  EXPECT_EQ(mixedPixels<std::uint8_t>(row, 1, same), (Bytes{0, 255, 0}));
  const Mixed deep{-20000, 20000, 100, 0, 0, 0};
  EXPECT_EQ(mixedPixels<std::uint16_t>(deep, 1, same), (Words{0, 65535, 32968}));
}

TEST(RowKernels, thereIsASetForThisProcessor) {
  for (const int bytes : {1, 2}) {
    EXPECT_TRUE(rowKernels(bytes).mixRows && rowKernels(bytes).mixPixels);
  }
  EXPECT_NE(rowKernels(1).mixRows, rowKernels(2).mixRows);
}

}  // namespace pelmora::decoder
