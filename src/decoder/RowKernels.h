#pragma once

#include "decoder/LanczosWeights.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace pelmora::decoder {

/// How far kernels may read and write behind the end of a row: buffers are longer by that.
constexpr std::size_t kRowSlack = 32;  // samples

/// A row between the two directions of `Resampler`, interleaved. What the filter throws beyond
/// black and white fits in. Values of 8 bits are times 64; those of 16 are less 32768 and halved.
using MixedRow = std::int16_t*;

/// The inner loops of `Resampler`, for samples of one size. All sets give the same results to the
/// bit. Thread: any; pure functions. Slack as above; rows of `mixPixels` have `taps` pixels
/// besides.
struct RowKernels {
  /// The sum of an even number of rows, each times its weight.
  void (*mixRows)(std::span<const std::byte* const> rows, const std::int16_t* weights,
                  std::size_t samples, MixedRow out);
  /// The pixels of a mixed row, 1 to 5 channels, made fewer.
  void (*mixPixels)(const std::int16_t* row, int channels, const LanczosWeights& weights,
                    std::byte* out);
};

/// For every processor; samples of 1 or 2 bytes.
[[nodiscard]] const RowKernels& plainRowKernels(int bytesPerSample);
/// For this processor, the fastest.
[[nodiscard]] const RowKernels& rowKernels(int bytesPerSample);

}  // namespace pelmora::decoder
