#include "decoder/PremultipliedRows.h"

#include <cassert>
#include <utility>
#include <vector>

namespace pelmora::decoder {

namespace {

/// The product of two fractions of 65535, rounded; without the slow division by it.
std::uint16_t product(std::uint32_t a, std::uint32_t b) {
  const std::uint32_t both = a * b + 32768;
  return static_cast<std::uint16_t>((both + (both >> 16)) >> 16);
}

template <typename Sample, int kChannels>
void premultiply(const Sample* from, int width, std::uint16_t* to) {
  constexpr std::uint32_t kScale = sizeof(Sample) == 1 ? 257 : 1;
  for (int x = 0; x < width; ++x, from += kChannels, to += kChannels) {
    const std::uint32_t alpha = from[kChannels - 1] * kScale;
    for (int i = 0; i < kChannels - 1; ++i) to[i] = product(from[i] * kScale, alpha);
    to[kChannels - 1] = static_cast<std::uint16_t>(alpha);
  }
}

template <typename Sample>
void premultiply(const std::vector<std::byte>& row, const RowFormat& format, std::uint16_t* to) {
  const auto* from = reinterpret_cast<const Sample*>(row.data());
  switch (format.channels()) {
    case 2:
      return premultiply<Sample, 2>(from, format.size.width, to);
    case 4:
      return premultiply<Sample, 4>(from, format.size.width, to);
    default:
      return premultiply<Sample, 5>(from, format.size.width, to);
  }
}

class PremultipliedRows final : public RowReader {
 public:
  explicit PremultipliedRows(std::unique_ptr<RowReader> rows)
      : _rows(std::move(rows)), _format(_rows->format()), _row(_rows->format().bytesPerRow()) {
    assert(_format.hasAlpha);
    _format.bytesPerChannel = 2;
  }

  [[nodiscard]] const PictureFacts& facts() const override { return _rows->facts(); }
  [[nodiscard]] const RowFormat& format() const override { return _format; }
  [[nodiscard]] Status finish() override { return _rows->finish(); }

  [[nodiscard]] Status readRow(std::span<std::byte> row) override {
    if (Status status = _rows->readRow(_row); !status) return status;
    auto* to = reinterpret_cast<std::uint16_t*>(row.data());
    if (_rows->format().bytesPerChannel == 1) {
      premultiply<std::uint8_t>(_row, _format, to);
    } else {
      premultiply<std::uint16_t>(_row, _format, to);
    }
    return Done{};
  }

 private:
  std::unique_ptr<RowReader> _rows;
  RowFormat _format;
  std::vector<std::byte> _row;
};

}  // namespace

std::unique_ptr<RowReader> premultipliedRows(std::unique_ptr<RowReader> rows) {
  return std::make_unique<PremultipliedRows>(std::move(rows));
}

}  // namespace pelmora::decoder
