#pragma once

#include "decoder/RowReader.h"

#include <cstdint>
#include <span>
#include <vector>

namespace pelmora::decoder {

/// Averages boxes of whole pixels, as rows come in: a cheap first step of a large reduction.
/// Boxes that reach over the right or lower edge are filled up with the pixels at the edge.
/// Thread: one.
class BoxAverage {
 public:
  /// The most pixels along a box's side.
  static constexpr int kMaxSide = 64;

  BoxAverage(const RowFormat& from, const PixelSize& box);

  /// Of the averages: as many pixels as boxes that are needed to cover the picture.
  [[nodiscard]] const RowFormat& format() const { return _format; }
  /// Takes the next row; when that completes a row of boxes, writes their averages to `out`
  /// (`format().bytesPerRow()`) and gives back true.
  bool push(std::span<const std::byte> row, std::span<std::byte> out);

 private:
  template <typename Sample, typename Sum>
  bool pushRow(const Sample* row, std::vector<Sum>& sums, Sample* out);

  RowFormat _from;
  RowFormat _format;
  PixelSize _box;
  int _rows = 0;       // of the picture, taken in
  int _rowsInBox = 0;  // of those, in the boxes that are being filled
  std::vector<std::uint16_t> _sums8;
  std::vector<std::uint32_t> _sums16;
};

}  // namespace pelmora::decoder
