#include "decoder/RowKernels.h"

#include "decoder/RowKernelsAvx2.h"

#include <algorithm>
#include <array>
#include <limits>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kBlock = 64;

template <typename To>
To clamped(std::int32_t value) {
  return static_cast<To>(std::clamp<std::int32_t>(value, std::numeric_limits<To>::min(),
                                                  std::numeric_limits<To>::max()));
}

/// What is left to shift away, and to add before, once weights are multiplied in.
template <typename Sample>
constexpr bool kIsByte = sizeof(Sample) == 1;
template <typename Sample>
constexpr int kRowShift = kIsByte<Sample> ? kWeightBits - 6 : kWeightBits + 1;
template <typename Sample>
constexpr int kPixelShift = kIsByte<Sample> ? kWeightBits + 6 : kWeightBits - 1;
template <typename Sample>
constexpr std::int32_t kCenter = kIsByte<Sample> ? 0 : 32768;

template <typename Sample>
void mixRows(std::span<const std::byte* const> rows, const std::int16_t* weights,
             std::size_t samples, MixedRow out) {
  for (std::size_t at = 0; at < samples; at += kBlock) {
    const std::size_t count = std::min(kBlock, samples - at);
    std::array<std::int32_t, kBlock> sums;
    sums.fill(1 << (kRowShift<Sample> - 1));
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const Sample* from = reinterpret_cast<const Sample*>(rows[row]) + at;
      const std::int32_t weight = weights[row];
      for (std::size_t i = 0; i < count; ++i) sums[i] += weight * (from[i] - kCenter<Sample>);
    }
    for (std::size_t i = 0; i < count; ++i) {
      out[at + i] = clamped<std::int16_t>(sums[i] >> kRowShift<Sample>);
    }
  }
}

template <typename Sample>
void mixPixels(const std::int16_t* row, int channels, const LanczosWeights& weights,
               std::byte* outBytes) {
  auto* out = reinterpret_cast<Sample*>(outBytes);
  const auto stride = static_cast<std::size_t>(channels);
  for (std::size_t pixel = 0; pixel < weights.first.size(); ++pixel) {
    const std::int16_t* from = row + static_cast<std::size_t>(weights.first[pixel]) * stride;
    const std::span<const std::int16_t> factors = weights.of(pixel);
    for (std::size_t channel = 0; channel < stride; ++channel) {
      std::int32_t sum = 1 << (kPixelShift<Sample> - 1);
      for (std::size_t tap = 0; tap < factors.size(); ++tap) {
        sum += factors[tap] * from[tap * stride + channel];
      }
      *out++ = clamped<Sample>((sum >> kPixelShift<Sample>)+kCenter<Sample>);
    }
  }
}

}  // namespace

const RowKernels& plainRowKernels(int bytesPerSample) {
  static constexpr RowKernels kBytes{mixRows<std::uint8_t>, mixPixels<std::uint8_t>};
  static constexpr RowKernels kWords{mixRows<std::uint16_t>, mixPixels<std::uint16_t>};
  return bytesPerSample == 1 ? kBytes : kWords;
}

const RowKernels& rowKernels(int bytesPerSample) {
  const RowKernels* const fast = avx2RowKernels(bytesPerSample);
  return fast ? *fast : plainRowKernels(bytesPerSample);
}

}  // namespace pelmora::decoder
