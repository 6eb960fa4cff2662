#include "ExactPicture.h"

#include "VipsPointer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <thread>

namespace pelmora::bench {

namespace {

constexpr std::size_t kChannels = 3;
constexpr double kLobes = 3;

double sinc(double x) {
  const double angle = std::numbers::pi * x;
  return std::abs(x) < 1e-12 ? 1 : std::sin(angle) / angle;
}

double lanczos(double x) { return std::abs(x) < kLobes ? sinc(x) * sinc(x / kLobes) : 0; }

/// What one output pixel takes of the line it is made from.
struct Taps {
  std::vector<std::size_t> places;  // clamped to the line
  std::vector<double> weights;      // sum 1
};

std::vector<Taps> tapsFor(int from, int to) {
  const double ratio = static_cast<double>(from) / to;
  const double stretch = std::max(1.0, ratio);
  std::vector<Taps> all(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    Taps& taps = all[static_cast<std::size_t>(i)];
    const double center = (i + 0.5) * ratio - 0.5;
    const int first = static_cast<int>(std::ceil(center - kLobes * stretch));
    const int last = static_cast<int>(std::floor(center + kLobes * stretch));
    double sum = 0;
    for (int at = first; at <= last; ++at) {
      taps.places.push_back(static_cast<std::size_t>(std::clamp(at, 0, from - 1)));
      taps.weights.push_back(lanczos((at - center) / stretch));
      sum += taps.weights.back();
    }
    for (double& weight : taps.weights) weight /= sum;
  }
  return all;
}

/// The rows [first, last) of `large`, made as narrow as there are taps.
void narrowRows(VipsImage* large, const std::vector<Taps>& columns, int first, int last,
                std::vector<double>& narrow) {
  for (int y = first; y < last; ++y) {
    const auto* row = reinterpret_cast<const std::uint8_t*>(VIPS_IMAGE_ADDR(large, 0, y));
    double* out = narrow.data() + static_cast<std::size_t>(y) * columns.size() * kChannels;
    for (const Taps& taps : columns) {
      double sums[kChannels] = {};
      for (std::size_t i = 0; i < taps.places.size(); ++i) {
        const std::uint8_t* pixel = row + kChannels * taps.places[i];
        for (std::size_t c = 0; c < kChannels; ++c) sums[c] += taps.weights[i] * pixel[c];
      }
      out = std::copy(sums, sums + kChannels, out);
    }
  }
}

ExactPicture reduced(VipsImage* large, const PixelSize& size) {
  const std::vector<Taps> columns = tapsFor(large->Xsize, size.width);
  const std::vector<Taps> rows = tapsFor(large->Ysize, size.height);
  const std::size_t rowLength = columns.size() * kChannels;
  std::vector<double> narrow(static_cast<std::size_t>(large->Ysize) * rowLength);
  {
    const int half = large->Ysize / 2;
    const std::jthread upper([&] { narrowRows(large, columns, 0, half, narrow); });
    narrowRows(large, columns, half, large->Ysize, narrow);
  }
  ExactPicture small{size, std::vector<double>(rows.size() * rowLength)};
  double* out = small.values.data();
  for (const Taps& taps : rows) {
    for (std::size_t i = 0; i < taps.places.size(); ++i) {
      const double* from = narrow.data() + taps.places[i] * rowLength;
      for (std::size_t x = 0; x < rowLength; ++x) out[x] += taps.weights[i] * from[x];
    }
    out += rowLength;
  }
  for (double& value : small.values) value = std::clamp(value, 0.0, 255.0);
  return small;
}

VipsPointer decodedInFull(const FilePath& file, bool hasProfile) {
  VipsImage* opened =
      vips_image_new_from_file(file.c_str(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
  mustWork(opened ? 0 : 1);
  VipsPointer picture(opened);
  if (hasProfile) {
    VipsImage* converted = nullptr;
    mustWork(vips_icc_transform(picture.get(), &converted, "srgb", "embedded", TRUE, nullptr));
    picture.reset(converted);
  }
  picture = inMemory(std::move(picture));
  VipsImage* upright = nullptr;
  mustWork(vips_autorot(picture.get(), &upright, nullptr));
  return inMemory(VipsPointer(upright));
}

}  // namespace

std::vector<ExactPicture> exactPictures(const FilePath& file, bool hasProfile,
                                        const std::vector<PixelSize>& sizes) {
  const VipsPointer large = decodedInFull(file, hasProfile);
  std::vector<ExactPicture> pictures;
  for (const PixelSize& size : sizes) pictures.push_back(reduced(large.get(), size));
  return pictures;
}

double signalToNoise(const ExactPicture& exact, const platform::Pixels& pixels) {
  if (pixels.size != exact.size) return 0;
  double sum = 0;
  const std::size_t count = exact.values.size() / kChannels;
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < kChannels; ++c) {
      // Ours is blue, green, red.
      const double difference = exact.values[kChannels * i + c] - pixels.bytes[4 * i + 2 - c];
      sum += difference * difference;
    }
  }
  const double mean = sum / static_cast<double>(exact.values.size());
  return 10 * std::log10(255.0 * 255.0 / std::max(mean, 1e-10));
}

}  // namespace pelmora::bench
