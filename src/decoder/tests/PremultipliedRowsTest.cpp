#include "decoder/PremultipliedRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace pelmora::decoder {

namespace {

/// One row, again and again, until it is told to fail.
class OneRow final : public RowReader {
 public:
  OneRow(RowFormat format, std::vector<std::byte> row) : _format(format), _row(std::move(row)) {
    _facts.format = "test";
  }

  [[nodiscard]] const PictureFacts& facts() const override { return _facts; }
  [[nodiscard]] const RowFormat& format() const override { return _format; }
  [[nodiscard]] Status readRow(std::span<std::byte> row) override {
    if (_row.empty()) return Error{"no row"};
    std::copy(_row.begin(), _row.end(), row.begin());
    return Done{};
  }
  [[nodiscard]] Status finish() override { return Error{"no end"}; }

 private:
  PictureFacts _facts;
  RowFormat _format;
  std::vector<std::byte> _row;
};

template <typename Sample>
std::vector<std::uint16_t> premultiplied(ColorModel model, const std::vector<Sample>& samples) {
  RowFormat format{.size = {}, .model = model, .hasAlpha = true, .bytesPerChannel = sizeof(Sample)};
  format.size = {int(samples.size()) / format.channels(), 1};
  std::vector<std::byte> row(samples.size() * sizeof(Sample));
  std::memcpy(row.data(), samples.data(), row.size());
  const auto rows = premultipliedRows(std::make_unique<OneRow>(format, std::move(row)));
  EXPECT_EQ(rows->format().bytesPerChannel, 2);
  std::vector<std::uint16_t> out(rows->format().samplesPerRow());
  EXPECT_TRUE(rows->readRow(std::as_writable_bytes(std::span(out))).ok());
  return out;
}

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

}  // namespace

TEST(PremultipliedRows, multiplyBytesAndWidenThem) {
  EXPECT_EQ(premultiplied(ColorModel::rgb, Bytes{255, 100, 0, 255, 255, 100, 0, 0}),
            (Words{65535, 25700, 0, 65535, 0, 0, 0, 0}));
  EXPECT_EQ(premultiplied(ColorModel::grey, Bytes{200, 51}), (Words{200 * 257 / 5, 51 * 257}));
}

TEST(PremultipliedRows, multiplyWordsRoundingToTheNearest) {
  EXPECT_EQ(premultiplied(ColorModel::grey, Words{65535, 65535, 65535, 1, 32768, 32768, 1, 32768}),
            (Words{65535, 65535, 1, 1, 16384, 32768, 1, 32768}));
  for (unsigned color = 0; color < 65536; color += 97) {
    for (unsigned alpha = 0; alpha < 65536; alpha += 997) {
      const auto exact = static_cast<std::uint16_t>(double(color) * alpha / 65535 + 0.5);
      ASSERT_EQ(premultiplied(ColorModel::grey, Words{std::uint16_t(color), std::uint16_t(alpha)}),
                (Words{exact, std::uint16_t(alpha)}));
    }
  }
}

TEST(PremultipliedRows, multiplyInksToo) {
  EXPECT_EQ(premultiplied(ColorModel::cmyk, Words{65535, 1000, 2000, 3000, 32768}),
            (Words{32768, 500, 1000, 1500, 32768}));
}

TEST(PremultipliedRows, passOnWhatTheyReadFrom) {
  const RowFormat format{.size = {1, 1}, .hasAlpha = true};
  const auto rows = premultipliedRows(std::make_unique<OneRow>(format, std::vector<std::byte>()));
  std::vector<std::byte> row(8);
  EXPECT_EQ(rows->facts().format, "test");
  EXPECT_EQ(rows->readRow(row).error().message, "no row");
  EXPECT_EQ(rows->finish().error().message, "no end");
}

}  // namespace pelmora::decoder
