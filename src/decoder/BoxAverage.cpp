#include "decoder/BoxAverage.h"

#include <algorithm>
#include <cassert>

namespace pelmora::decoder {

namespace {

constexpr int kReciprocalBits = 32;

int boxesIn(int length, int side) { return (length + side - 1) / side; }

template <typename Sample, typename Sum>
void addRow(const Sample* row, Sum* sums, std::size_t samples, bool isFirst) {
  if (isFirst) {
    std::copy(row, row + samples, sums);
    return;
  }
  for (std::size_t i = 0; i < samples; ++i) sums[i] = static_cast<Sum>(sums[i] + row[i]);
}

struct Columns {
  int whole = 0;  // boxes
  int left = 0;   // pixels of the last box that are in the picture
  int side = 1;   // of a box
  int pixelsInBox = 1;
};

template <typename Sample, typename Sum>
void averageColumns(const Sum* sums, const Columns& columns, int channels, Sample* out) {
  const auto stride = static_cast<std::size_t>(channels);
  const auto side = static_cast<std::size_t>(columns.side);
  const std::uint64_t reciprocal = ((std::uint64_t{1} << kReciprocalBits) +
                                    static_cast<std::uint64_t>(columns.pixelsInBox) / 2) /
                                   static_cast<std::uint64_t>(columns.pixelsInBox);
  const auto average = [reciprocal](std::uint32_t sum) {
    constexpr std::uint64_t kHalf = std::uint64_t{1} << (kReciprocalBits - 1);
    return static_cast<Sample>((sum * reciprocal + kHalf) >> kReciprocalBits);
  };
  for (int box = 0; box < columns.whole; ++box, sums += side * stride, out += stride) {
    for (std::size_t channel = 0; channel < stride; ++channel) {
      std::uint32_t sum = 0;
      for (std::size_t i = 0; i < side; ++i) sum += sums[i * stride + channel];
      out[channel] = average(sum);
    }
  }
  if (columns.left == 0) return;
  const auto left = static_cast<std::size_t>(columns.left);
  for (std::size_t channel = 0; channel < stride; ++channel) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < side; ++i) sum += sums[std::min(i, left - 1) * stride + channel];
    out[channel] = average(sum);
  }
}

}  // namespace

BoxAverage::BoxAverage(const RowFormat& from, const PixelSize& box)
    : _from(from), _format(from), _box(box) {
  assert(std::max(box.width, box.height) <= kMaxSide);
  _format.size = {boxesIn(from.size.width, box.width), boxesIn(from.size.height, box.height)};
  if (from.bytesPerChannel == 1) {
    _sums8.resize(from.samplesPerRow());
  } else {
    _sums16.resize(from.samplesPerRow());
  }
}

bool BoxAverage::push(std::span<const std::byte> row, std::span<std::byte> out) {
  assert(row.size() >= _from.bytesPerRow() && out.size() >= _format.bytesPerRow());
  if (_from.bytesPerChannel == 1) {
    return pushRow(reinterpret_cast<const std::uint8_t*>(row.data()), _sums8,
                   reinterpret_cast<std::uint8_t*>(out.data()));
  }
  return pushRow(reinterpret_cast<const std::uint16_t*>(row.data()), _sums16,
                 reinterpret_cast<std::uint16_t*>(out.data()));
}

template <typename Sample, typename Sum>
bool BoxAverage::pushRow(const Sample* row, std::vector<Sum>& sums, Sample* out) {
  const bool isLast = ++_rows == _from.size.height;
  do {
    addRow(row, sums.data(), sums.size(), _rowsInBox == 0);
    ++_rowsInBox;
  } while (isLast && _rowsInBox < _box.height);
  if (_rowsInBox < _box.height) return false;
  _rowsInBox = 0;
  averageColumns(sums.data(),
                 Columns{.whole = _from.size.width / _box.width,
                         .left = _from.size.width % _box.width,
                         .side = _box.width,
                         .pixelsInBox = _box.width * _box.height},
                 _from.channels(), out);
  return true;
}

}  // namespace pelmora::decoder
