#include "decoder/JpegRows.h"

#include "decoder/JpegDecompressor.h"
#include "decoder/tests/PaintedJpeg.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace pelmora::decoder {

namespace {

using testing::StartsWith;

constexpr int kAnySize = 100'000;

struct Rows {
  PictureFacts facts;
  RowFormat format;
  std::vector<std::uint8_t> bytes;
};

class JpegRowsTest : public testing::Test {
 protected:
  platform::FileDescriptor opened(const std::string& bytes) {
    return platform::FileDescriptor(open(_folder.write("a.jpg", bytes).c_str(), O_RDONLY));
  }

  Result<Rows> read(const std::string& bytes, int longestSide = kAnySize) {
    const platform::FileDescriptor file = opened(bytes);
    Result<std::unique_ptr<RowReader>> reader = openJpeg(file.get(), longestSide);
    if (!reader) return reader.error();
    if (!*reader) return Error{"not read here"};
    Rows rows{(*reader)->facts(), (*reader)->format(), {}};
    std::vector<std::byte> row(rows.format.bytesPerRow());
    for (int y = 0; y < rows.format.size.height; ++y) {
      if (Status status = (*reader)->readRow(row); !status) return status.error();
      for (const std::byte value : row) rows.bytes.push_back(std::to_integer<std::uint8_t>(value));
    }
    if (Status status = (*reader)->finish(); !status) return status.error();
    return rows;
  }

  std::string reasonFor(const std::string& bytes, int longestSide = kAnySize) {
    const Result<Rows> rows = read(bytes, longestSide);
    return rows ? "it was read" : rows.error().message;
  }

  platform::TemporaryFolder _folder;
};

/// The largest difference from what was painted.
int difference(const Rows& rows, const JpegPaint& paint) {
  int largest = 0;
  const int channels = rows.format.channels();
  for (int i = 0; i < int(rows.bytes.size()); ++i) {
    const int pixel = i / channels;
    const int expected =
        paintedValue(paint, pixel % paint.width, pixel / paint.width, i % channels);
    largest = std::max(largest, std::abs(expected - int(rows.bytes[std::size_t(i)])));
  }
  return largest;
}

/// Bytes that begin like a picture of that size and kind of frame.
std::string headerOf(int width, int height, char frame, const std::string& scan) {
  std::string bytes("\xff\xd8\xff", 3);
  bytes += frame;
  bytes += std::string("\0\x11\x08", 3);
  for (const int side : {height, width}) {
    bytes += static_cast<char>(side >> 8);
    bytes += static_cast<char>(side & 255);
  }
  bytes += std::string("\x03\1\x11\0\2\x11\0\3\x11\0", 10);
  return bytes + scan;
}

const std::string kScanOfAll("\xff\xda\0\x0c\3\1\0\2\0\3\0\0\0\0", 14);

}  // namespace

TEST_F(JpegRowsTest, readsEverySampling) {
  for (const auto& [across, down] : {std::pair{1, 1}, {2, 1}, {2, 2}, {1, 2}, {4, 1}}) {
    for (const bool isProgressive : {false, true}) {
      const JpegPaint paint{
          .acrossPerChroma = across, .downPerChroma = down, .isProgressive = isProgressive};
      const Result<Rows> rows = read(paintedJpeg(paint));
      ASSERT_TRUE(rows.ok()) << rows.error().message;
      EXPECT_LE(difference(*rows, paint), 16) << across << down << isProgressive;
    }
  }
}

TEST_F(JpegRowsTest, readsGrey) {
  for (const bool isProgressive : {false, true}) {
    const JpegPaint paint{.channels = 1, .isProgressive = isProgressive};
    const Result<Rows> rows = read(paintedJpeg(paint));
    ASSERT_TRUE(rows.ok()) << rows.error().message;
    EXPECT_EQ(rows->format.model, ColorModel::grey);
    EXPECT_LE(difference(*rows, paint), 6);
  }
}

TEST_F(JpegRowsTest, readsPicturesOfOddSizes) {
  for (const auto& [width, height] :
       {std::pair{1, 1}, {1, 5000}, {5000, 1}, {17, 33}, {7, 9}, {65, 31}}) {
    const JpegPaint paint{.width = width, .height = height};
    const Result<Rows> rows = read(paintedJpeg(paint));
    ASSERT_TRUE(rows.ok()) << rows.error().message;
    EXPECT_EQ(rows->facts.storedSize, (PixelSize{width, height}));
    EXPECT_EQ(rows->format.size, (PixelSize{width, height}));
  }
}

TEST_F(JpegRowsTest, leavesInksToOthersAndTheFileAsItWas) {
  const platform::FileDescriptor file = opened(paintedJpeg({.channels = 4}));
  const auto reader = openJpeg(file.get(), 10);
  ASSERT_TRUE(reader.ok());
  EXPECT_EQ(*reader, nullptr);
  EXPECT_EQ(lseek(file.get(), 0, SEEK_CUR), 0);
}

TEST_F(JpegRowsTest, readsTheSmallestSizeThatLeavesEnoughToBeFiltered) {
  const std::string bytes = paintedJpeg({.width = 803, .height = 400});
  for (const auto& [longestSide, size] : {std::pair{1, PixelSize{101, 50}},
                                          {62, {101, 50}},
                                          {63, {201, 100}},
                                          {125, {201, 100}},
                                          {126, {402, 200}},
                                          {250, {402, 200}},
                                          {251, {803, 400}},
                                          {5000, {803, 400}}}) {
    const Result<Rows> rows = read(bytes, longestSide);
    ASSERT_TRUE(rows.ok());
    EXPECT_EQ(rows->format.size, size) << longestSide;
    EXPECT_EQ(rows->facts.storedSize, (PixelSize{803, 400}));
    EXPECT_DOUBLE_EQ(rows->format.reachX / rows->format.reachY, 803.0 / 400);
    EXPECT_LE(rows->format.reachX, size.width);
  }
}

TEST_F(JpegRowsTest, tellsOfHowManyPixelsEachIsTheAverage) {
  const std::string bytes = paintedJpeg({.width = 80, .height = 80});
  for (const auto& [longestSide, box] : {std::pair{6, 8}, {12, 4}, {25, 2}, {26, 1}, {80, 1}}) {
    EXPECT_EQ(read(bytes, longestSide)->format.averagedBox, box) << longestSide;
  }
}

TEST_F(JpegRowsTest, tellsOrientationAndProfile) {
  const std::string large(100'000, 'x');
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const Result<Rows> rows = read(paintedJpeg(
        {.exif = exifOf(orientation), .profile = {large.substr(0, 60'000), large.substr(60'000)}}));
    ASSERT_TRUE(rows.ok());
    EXPECT_EQ(rows->facts.format, "JPEG");
    EXPECT_EQ(rows->facts.orientation, orientation);
    EXPECT_EQ(rows->facts.profile, large);
  }
  EXPECT_EQ(read(paintedJpeg({}))->facts.profile, "");
}

TEST_F(JpegRowsTest, readsRestartMarkersAndArithmeticCoding) {
  const JpegPaint restarted{.restartInterval = 2};
  EXPECT_LE(difference(*read(paintedJpeg(restarted)), restarted), 16);
  const JpegPaint arithmetic{.isArithmetic = true};
  EXPECT_LE(difference(*read(paintedJpeg(arithmetic)), arithmetic), 16);
}

TEST_F(JpegRowsTest, doesNotCareForWhatFollowsThePicture) {
  const JpegPaint paint{};
  const std::string bytes = paintedJpeg(paint);
  EXPECT_LE(difference(*read(bytes + bytes), paint), 16);
  EXPECT_LE(difference(*read(bytes + "and so on"), paint), 16);
}

TEST_F(JpegRowsTest, refusesFilesThatAreCutShortAnywhere) {
  for (const bool isProgressive : {false, true}) {
    const std::string bytes =
        paintedJpeg({.width = 24, .height = 16, .isProgressive = isProgressive});
    for (std::size_t length = 3; length < bytes.size(); length += 17) {
      EXPECT_EQ(reasonFor(bytes.substr(0, length)), "it is cut short") << length;
    }
    EXPECT_EQ(reasonFor(bytes.substr(0, bytes.size() - 1)), "it is cut short");
    EXPECT_EQ(reasonFor(bytes.substr(0, bytes.size() - 2)), "it is cut short");
  }
  EXPECT_EQ(reasonFor(""), "it is cut short");
}

TEST_F(JpegRowsTest, refusesACutFileThatPretendsToEnd) {
  const std::string bytes = paintedJpeg({});
  EXPECT_THAT(reasonFor(bytes.substr(0, bytes.size() * 3 / 4) + "\xff\xd9"),
              StartsWith("it is damaged (Corrupt JPEG data: premature end of data segment)"));
}

TEST_F(JpegRowsTest, neitherCrashesNorSaysTwoLinesWhateverBitIsFlipped) {
  for (const bool isProgressive : {false, true}) {
    const std::string bytes =
        paintedJpeg({.width = 24, .height = 16, .isProgressive = isProgressive, .exif = exifOf(6)});
    for (std::size_t at = 2; at < bytes.size(); at += 11) {
      std::string flipped = bytes;
      flipped[at] = static_cast<char>(flipped[at] ^ (1 << at % 8));
      const std::string reason = reasonFor(flipped, 10);
      EXPECT_FALSE(reason.empty());
      EXPECT_EQ(reason.find('\n'), std::string::npos);
    }
  }
}

TEST_F(JpegRowsTest, refusesPicturesOfTooManyPasses) {
  const auto reason = [this](int repeatedScans) {
    return reasonFor(paintedJpeg({.isProgressive = true, .repeatedScans = repeatedScans}));
  };
  EXPECT_EQ(reason(kMaxJpegScans - 4), "it was read");
  EXPECT_EQ(reason(kMaxJpegScans),
            "it is stored in more than 40 passes, which would take too long");
  EXPECT_EQ(reason(1000), "it is stored in more than 40 passes, which would take too long");
}

TEST_F(JpegRowsTest, refusesEnormousPicturesByTheirHeader) {
  EXPECT_EQ(reasonFor(headerOf(65'000, 65'000, '\xc0', kScanOfAll)),
            "it is 65000 × 65000 pixels, and no more than 500 megapixels of its kind are read");
  // A picture of several passes is held as its coefficients.
  EXPECT_EQ(reasonFor(headerOf(15'000, 15'000, '\xc2', kScanOfAll)),
            "it is 15000 × 15000 pixels, and no more than 125 megapixels of its kind are read");
}

TEST_F(JpegRowsTest, refusesKindsThatTheLibraryDoesNotRead) {
  EXPECT_THAT(reasonFor(headerOf(64, 64, '\xc3', kScanOfAll)),
              StartsWith("it is a JPEG of an unknown kind ("));
  EXPECT_THAT(reasonFor("no picture"), StartsWith("it is damaged (Not a JPEG file"));
  EXPECT_THAT(reasonFor(headerOf(64, 64, '\xc0', kScanOfAll) + std::string(9000, 'x')),
              StartsWith("it is damaged (Quantization table"));
}

}  // namespace pelmora::decoder
