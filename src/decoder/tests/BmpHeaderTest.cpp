#include "decoder/BmpHeader.h"

#include "decoder/tests/PaintedBmp.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kHeaderSize = 14;
constexpr std::size_t kWidth = 18;
constexpr std::size_t kHeight = 22;
constexpr std::size_t kBits = 28;
constexpr std::size_t kCompression = 30;
constexpr std::size_t kColors = 46;
constexpr std::size_t kRowsOffset = 10;

const BmpKind kBits8{.bits = 8};
const BmpKind kRuns8{.bits = 8, .compression = 1};

class BmpHeaderTest : public testing::Test {
 protected:
  Result<BmpHeader> readBytes(const std::string& bytes, off_t length = 0) {
    _descriptor = fileOf(bytes);
    // Zeros to its end, which take no room.
    if (length > 0 && ftruncate(_descriptor.get(), length) != 0) {
      throw std::runtime_error("not grown");
    }
    return readBmpHeader(_descriptor.get());
  }
  BmpHeader readWell(const std::string& bytes) {
    Result<BmpHeader> header = readBytes(bytes);
    if (!header) throw std::runtime_error(header.error().message);
    return *header;
  }
  std::string reason(const std::string& bytes, off_t length = 0) {
    const Result<BmpHeader> header = readBytes(bytes, length);
    return header ? "" : header.error().message;
  }

  platform::FileDescriptor _descriptor;
};

}  // namespace

TEST_F(BmpHeaderTest, tellsTheSizeAndWhereTheRowsAre) {
  for (const BmpKind& kind : bmpKinds()) {
    const std::string bytes = paintedBmp(kind, {9, 5});
    const BmpHeader header = readWell(bytes);
    EXPECT_EQ(header.size, (PixelSize{9, 5})) << kind.name;
    EXPECT_EQ(header.rowsOffset + header.rowsBytes, std::int64_t(bytes.size())) << kind.name;
    EXPECT_EQ(header.rowsOffset, std::int64_t(header.begin.size() + kind.gap)) << kind.name;
  }
}

TEST_F(BmpHeaderTest, letsTheRowsFollowAtOnce) {
  const std::string bytes = paintedBmp({.gap = 700}, {9, 5});
  const std::string begin = readWell(bytes).begin;
  EXPECT_EQ(begin, withNumber(bytes.substr(0, 54), kRowsOffset, 54));
}

TEST_F(BmpHeaderTest, takesFewerColoursThanThereCanBe) {
  const std::string all = paintedBmp(kBits8, {9, 5});
  const BmpHeader header = readWell(withNumber(all, kColors, 4));
  EXPECT_EQ(header.begin.size(), 54U + 4 * 4);
  EXPECT_NE(reason(withNumber(all, kColors, 257)), "");
  EXPECT_NE(reason(withNumber(all, kColors, 0xFFFFFFFF)), "");
}

TEST_F(BmpHeaderTest, refusesKindsThatAreNotRead) {
  const std::string good = paintedBmp({}, {9, 5});
  const std::string unread = "it is of a kind that is not read";
  EXPECT_EQ(reason(withNumber(good, kHeaderSize, 41)), unread);
  EXPECT_EQ(reason(withNumber(good, kHeaderSize, 0xFFFFFFFF)), unread);
  for (const std::uint32_t bits : {0U, 2U, 48U, 64U, 0xFFFFU}) {
    EXPECT_EQ(reason(withNumber(good, kBits, bits, 2)), unread) << bits;
  }
  for (const std::uint32_t compression : {1U, 2U, 3U, 4U, 5U, 0xFFFFFFFFU}) {
    EXPECT_EQ(reason(withNumber(good, kCompression, compression)), unread) << compression;
  }
}

TEST_F(BmpHeaderTest, refusesSizesThatAreNone) {
  const std::string good = paintedBmp({}, {9, 5});
  for (const std::size_t field : {kWidth, kHeight}) {
    EXPECT_EQ(reason(withNumber(good, field, 0)), "it has no pixels");
    EXPECT_NE(reason(withNumber(good, field, 0x80000000)), "");
  }
  EXPECT_EQ(reason(withNumber(good, kWidth, 0xFFFFFFFF)), "it has no pixels");
}

TEST_F(BmpHeaderTest, refusesSizesAboveTheLimitsBeforeAnyPixel) {
  const std::string good = paintedBmp({}, {9, 5});
  for (const std::uint32_t height : {1'000'000U, 0U - 1'000'000U, 0x7FFFFFFFU}) {
    const std::string large = withNumber(withNumber(good, kWidth, 1'000'000), kHeight, height);
    EXPECT_NE(reason(large).find("megapixels"), std::string::npos) << height;
  }
}

TEST_F(BmpHeaderTest, refusesFilesThatCannotHoldTheirRows) {
  const std::string cut = "it is damaged (it is cut short)";
  for (const BmpKind& kind : {BmpKind{}, kRuns8}) {
    const std::string bytes = paintedBmp(kind, {9, 5});
    EXPECT_EQ(reason(withNumber(bytes, kHeight, 5000)), cut);
    EXPECT_EQ(reason(withNumber(bytes, kRowsOffset, 0x7FFFFFFF)), cut);
    EXPECT_EQ(reason(withNumber(bytes, kRowsOffset, 20)),
              "it is damaged (its rows begin too early)");
  }
}

TEST_F(BmpHeaderTest, refusesMoreRunsThanCanBeReadSafely) {
  const std::string bytes = paintedBmp(kRuns8, {9, 5});
  EXPECT_EQ(reason(bytes, 8 << 20), "");
  EXPECT_EQ(reason(bytes, 9 << 20), "it is larger than what is read of its kind");
  EXPECT_EQ(reason(paintedBmp({}, {9, 5}), 9 << 20), "");
}

TEST_F(BmpHeaderTest, leavesTheDescriptorWhereItIs) {
  readWell(paintedBmp({}, {9, 5}));
  EXPECT_EQ(lseek(_descriptor.get(), 0, SEEK_CUR), 0);
}

}  // namespace pelmora::decoder
