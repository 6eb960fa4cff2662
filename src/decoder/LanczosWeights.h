#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pelmora::decoder {

/// The fractional bits of a weight.
constexpr int kWeightBits = 14;

/// With which weight each sample of a line goes into each sample of a shorter one.
/// Output i is the sum of the `taps` samples from `first[i]` on, each times its weight; only the
/// first `counts[i]` weights of an output are not 0, and only those samples lie in the line.
struct LanczosWeights {
  int taps = 0;  // a multiple of 4
  std::vector<int> first;
  std::vector<int> counts;
  std::vector<std::int16_t> weights;  // those of an output sum up to exactly 1 << kWeightBits

  [[nodiscard]] std::span<const std::int16_t> of(std::size_t output) const {
    const auto length = static_cast<std::size_t>(taps);
    return std::span(weights).subspan(output * length, length);
  }
};

/// How a line's input samples came to be.
struct LineInputs {
  int count = 0;
  double reach = 0;     // the line's end; below `count` where the last sample lies partly beyond
  int averagedBox = 1;  // each is the average of so many samples of a finer line
};

/// The weights of the Lanczos filter of three lobes, stretched by the reduction, that make
/// `outputs` samples of `inputs`. What the filter asks for beyond the ends is taken from the sample
/// at the end. Averaging has blurred the samples a little: the weights sharpen as much.
[[nodiscard]] LanczosWeights lanczosWeights(const LineInputs& inputs, int outputs);

}  // namespace pelmora::decoder
