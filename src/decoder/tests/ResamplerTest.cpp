#include "decoder/Resampler.h"

#include "decoder/LanczosWeights.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace pelmora::decoder {

namespace {

/// The value, 0 to 1, at a place in pixels, of a channel.
using Painting = std::function<double(double x, double y, int channel)>;

double full(const RowFormat& format) { return format.bytesPerChannel == 1 ? 255 : 65535; }

void put(std::span<std::byte> row, const RowFormat& format, std::size_t at, double value) {
  const long rounded = std::lround(value * full(format));
  if (format.bytesPerChannel == 1) {
    row[at] = static_cast<std::byte>(rounded);
  } else {
    reinterpret_cast<std::uint16_t*>(row.data())[at] = static_cast<std::uint16_t>(rounded);
  }
}

std::vector<double> values(const Raster& raster) {
  std::vector<double> all;
  if (raster.format.bytesPerChannel == 1) {
    for (const std::byte value : raster.bytes) all.push_back(std::to_integer<int>(value));
  } else {
    const auto* words = reinterpret_cast<const std::uint16_t*>(raster.bytes.data());
    all.assign(words, words + raster.bytes.size() / 2);
  }
  return all;
}

Raster painted(const RowFormat& format, const Painting& paint) {
  Raster raster;
  raster.format = format;
  raster.bytes.resize(format.bytesPerRow() * std::size_t(format.size.height));
  for (int y = 0; y < format.size.height; ++y) {
    const auto row = std::span(raster.bytes)
                         .subspan(std::size_t(y) * format.bytesPerRow(), format.bytesPerRow());
    for (std::size_t i = 0; i < format.samplesPerRow(); ++i) {
      const int channels = format.channels();
      put(row, format, i, paint(double(int(i) / channels), y, int(i) % channels));
    }
  }
  return raster;
}

Raster resampled(const Raster& from, const PixelSize& to) {
  Resampler resampler(from.format, to);
  const std::size_t bytes = from.format.bytesPerRow();
  for (int y = 0; y < from.format.size.height; ++y) {
    resampler.push(std::span(from.bytes).subspan(std::size_t(y) * bytes, bytes));
  }
  return resampler.take();
}

/// Lanczos3 in floating point, as in the books; the value of one channel at one place.
double exactAt(const Raster& from, const PixelSize& to, int x, int y, int channel) {
  const auto [width, height] = from.format.size;
  const auto weightsOf = [](int length, int outputs, int i) {
    const double step = double(length) / outputs;
    const double center = (i + 0.5) * step - 0.5;
    std::vector<std::pair<int, double>> weights;
    double total = 0;
    for (int input = int(std::ceil(center - 3 * step)); input <= center + 3 * step; ++input) {
      const double angle = std::acos(-1.0) * (input - center) / step;
      const double weight =
          angle == 0 ? 1 : 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
      weights.emplace_back(std::clamp(input, 0, length - 1), weight);
      total += weight;
    }
    for (auto& [input, weight] : weights) weight /= total;
    return weights;
  };
  const auto across = weightsOf(width, to.width, x);
  double sum = 0;
  for (const auto& [row, down] : weightsOf(height, to.height, y)) {
    for (const auto& [column, weight] : across) {
      const std::size_t at = (std::size_t(row) * std::size_t(width) + std::size_t(column)) *
                                 std::size_t(from.format.channels()) +
                             std::size_t(channel);
      sum += down * weight * std::to_integer<int>(from.bytes[at]);
    }
  }
  return std::clamp(sum, 0.0, 255.0);
}

/// Signal to noise against the exact result, at a sample of all places.
double psnr(const Raster& from, const PixelSize& to) {
  const Raster result = resampled(from, to);
  const std::vector<double> got = values(result);
  const int channels = from.format.channels();
  double squares = 0;
  int count = 0;
  for (int y = 0; y < to.height; y += 3) {
    for (int x = y % 5; x < to.width; x += 5, ++count) {
      const int channel = count % channels;
      const std::size_t at =
          (std::size_t(y) * std::size_t(to.width) + std::size_t(x)) * std::size_t(channels) +
          std::size_t(channel);
      const double error = got[at] - exactAt(from, to, x, y, channel);
      squares += error * error;
    }
  }
  return 10 * std::log10(255.0 * 255.0 * count / squares);
}

/// Waves of every direction and length with an edge through them.
double texture(double x, double y, int channel) {
  const double waves = 0.2 * std::sin(x * y / 900 + channel) + 0.15 * std::sin(x * 0.7) +
                       0.1 * std::cos(y * 1.9 + x * 0.3);
  return std::clamp(0.5 + waves + (3 * x > 2 * y + 40 ? 0.2 : -0.2), 0.0, 1.0);
}

std::vector<RowFormat> everyFormat(const PixelSize& size) {
  std::vector<RowFormat> formats;
  for (const ColorModel model : {ColorModel::grey, ColorModel::rgb, ColorModel::cmyk}) {
    for (const bool hasAlpha : {false, true}) {
      for (const int bytes : {1, 2}) formats.push_back({size, model, hasAlpha, bytes});
    }
  }
  return formats;
}

}  // namespace

TEST(Resampler, fitsTheLongerSide) {
  EXPECT_EQ(fittedSize({6000, 4000}, 810), (PixelSize{810, 540}));
  EXPECT_EQ(fittedSize({4000, 6000}, 810), (PixelSize{540, 810}));
  EXPECT_EQ(fittedSize({1001, 500}, 100), (PixelSize{100, 50}));
  EXPECT_EQ(fittedSize({50'000, 3}, 100), (PixelSize{100, 1}));
  EXPECT_EQ(fittedSize({500'000'000, 1}, 1), (PixelSize{1, 1}));
}

TEST(Resampler, neverEnlarges) {
  EXPECT_EQ(fittedSize({20, 30}, 810), (PixelSize{20, 30}));
  EXPECT_EQ(fittedSize({810, 30}, 810), (PixelSize{810, 30}));
}

TEST(Resampler, keepsAPlainColour) {
  for (const RowFormat& format : everyFormat({97, 61})) {
    for (const PixelSize to : {PixelSize{96, 60}, {50, 31}, {9, 6}, {3, 2}, {1, 1}}) {
      for (const double value : {0.0, 1.0}) {
        const Raster result =
            resampled(painted(format, [value](double, double, int) { return value; }), to);
        EXPECT_EQ(result.format.size, to);
        for (const double got : values(result)) ASSERT_EQ(got, value * full(format));
      }
    }
  }
}

TEST(Resampler, leavesAPictureOfTheRightSizeAsItIs) {
  for (const RowFormat& format : everyFormat({31, 17})) {
    const Raster picture = painted(format, texture);
    EXPECT_EQ(resampled(picture, {31, 17}).bytes, picture.bytes);
  }
}

TEST(Resampler, keepsEveryValueInADirectionThatStays) {
  const RowFormat format{.size = {256, 8}, .model = ColorModel::grey};
  const Raster picture = painted(format, [](double x, double, int) { return x / 255; });
  const std::vector<double> got = values(resampled(picture, {256, 1}));
  for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(got[i], double(i));
}

TEST(Resampler, keepsARampInItsPlace) {
  for (const int bytes : {1, 2}) {
    const RowFormat format{.size = {500, 497}, .model = ColorModel::grey, .bytesPerChannel = bytes};
    const auto ramp = [](double x, double y, int) { return (x + y) / 1000; };
    const Raster picture = painted(format, ramp);
    for (const PixelSize to : {PixelSize{400, 390}, {150, 149}, {40, 39}}) {
      const std::vector<double> got = values(resampled(picture, to));
      for (int i = to.height / 8; i < to.height * 7 / 8; i += to.height / 8) {
        const double x = (i + 0.5) * 500 / to.width - 0.5;
        const double y = (i + 0.5) * 497 / to.height - 0.5;
        const double tolerance = bytes == 1 ? 0.75 / 255 : 0.0001;
        ASSERT_NEAR(got[std::size_t(i * to.width + i)] / full(format), ramp(x, y, 0), tolerance)
            << to.width << " " << i;
      }
    }
  }
}

TEST(Resampler, isCloseToTheExactFilter) {
  const Raster picture = painted({.size = {300, 211}}, texture);
  EXPECT_GE(psnr(picture, {299, 210}), 58);
  EXPECT_GE(psnr(picture, {200, 141}), 58);
  EXPECT_GE(psnr(picture, {60, 42}), 58);
}

TEST(Resampler, isCloseToTheExactFilterWhereItBeginsWithBoxes) {
  const Raster picture = painted({.size = {413, 218}}, texture);
  EXPECT_GE(psnr(picture, {60, 32}), 48);
  EXPECT_GE(psnr(picture, {28, 15}), 46);
}

TEST(Resampler, isCloseToTheExactFilterForOneChannelAndFour) {
  EXPECT_GE(psnr(painted({.size = {300, 211}, .model = ColorModel::grey}, texture), {70, 49}), 58);
  EXPECT_GE(psnr(painted({.size = {300, 211}, .model = ColorModel::cmyk}, texture), {70, 49}), 58);
}

TEST(Resampler, takesWhatReachesBeyondTheEdgeForNoPartOfThePicture) {
  // As a JPEG that is read at an eighth: 5 columns of it in the last pixel, 3 are filled up.
  RowFormat format{.size = {101, 20}, .model = ColorModel::grey};
  format.reachX = 100.625;
  const Raster picture = painted(format, [](double x, double, int) { return x / 128; });
  const std::vector<double> got = values(resampled(picture, {50, 20}));
  EXPECT_NEAR(got[40], (40.5 * 100.625 / 50 - 0.5) / 128 * 255, 0.6);
}

TEST(Resampler, sharpensWhatWasAveragedEvenAtTheSameSize) {
  RowFormat format{.size = {40, 40}, .model = ColorModel::grey};
  format.averagedBox = 8;
  const auto stripes = [](double x, double, int) { return int(x) / 4 % 2 == 0 ? 0.25 : 0.75; };
  const std::vector<double> got = values(resampled(painted(format, stripes), {40, 40}));
  EXPECT_LT(got[19], 64);
  EXPECT_GT(got[20], 191);
}

TEST(Resampler, makesPicturesOfOneRowOrColumnSmaller) {
  const auto plain = [](double, double, int) { return 0.5; };
  for (const PixelSize from : {PixelSize{5000, 1}, {1, 5000}}) {
    const PixelSize to = fittedSize(from, 100);
    for (const double value : values(resampled(painted({.size = from}, plain), to))) {
      ASSERT_EQ(value, 128);
    }
  }
}

TEST(Resampler, saysThatAlphaIsMultipliedIn) {
  EXPECT_TRUE(
      resampled(painted({.size = {4, 4}, .hasAlpha = true}, texture), {2, 2}).premultiplied);
  EXPECT_FALSE(resampled(painted({.size = {4, 4}}, texture), {2, 2}).premultiplied);
}

}  // namespace pelmora::decoder
