#pragma once

#include "decoder/Raster.h"

#include <memory>

namespace pelmora::decoder {

/// The size of a picture whose longer side is to be at most `longestSide`: never enlarged, the
/// other side rounded to the nearest pixel, at least 1.
[[nodiscard]] PixelSize fittedSize(const PixelSize& size, int longestSide);

/// Makes a picture smaller with the Lanczos filter of three lobes, row by row as its rows come in,
/// so that no more than a few rows of the large picture are in memory. The filter is stretched to
/// the reduction (it is the low pass filter too), its edges clamp, and each output pixel's centre
/// lies at (i + 0.5) × from ÷ to - 0.5. A reduction by far more than the filter needs is begun by
/// averaging whole boxes, which costs a fraction and changes less than the rounding does.
/// Computes with integers, so that the result is the same on every processor; AVX2 is used where
/// the processor has it. Alpha: rows with alpha must come in premultiplied (`PremultipliedRows`).
/// Source of the filter: C. E. Duchon, "Lanczos Filtering in One and Two Dimensions", 1979.
/// Thread: one.
class Resampler {
 public:
  Resampler(const RowFormat& from, const PixelSize& to);
  ~Resampler();

  /// Takes the next row, `from.bytesPerRow()` bytes, from the top.
  void push(std::span<const std::byte> row);
  /// After the last row: the small picture, of `to` and otherwise of the format it came in.
  [[nodiscard]] Raster take();

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::decoder
