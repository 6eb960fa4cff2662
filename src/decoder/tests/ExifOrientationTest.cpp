#include "decoder/ExifOrientation.h"

#include "decoder/tests/PaintedJpeg.h"

#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

int orientationOf(const std::string& exif) {
  return exifOrientation({reinterpret_cast<const unsigned char*>(exif.data()), exif.size()});
}

}  // namespace

TEST(ExifOrientation, isReadInBothByteOrders) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    EXPECT_EQ(orientationOf(exifOf(orientation)), orientation);
  }
  const std::string bigEndian(
      "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 32);
  EXPECT_EQ(orientationOf(bigEndian), 6);
}

TEST(ExifOrientation, isOneWhereItIsOutOfRange) {
  for (const int orientation : {0, 9, 255, 65535}) {
    EXPECT_EQ(orientationOf(exifOf(orientation)), 1);
  }
}

TEST(ExifOrientation, isOneWhereTheDataIsCutShortOrNone) {
  const std::string whole = exifOf(6);
  EXPECT_EQ(orientationOf(""), 1);
  EXPECT_EQ(orientationOf("Exif"), 1);
  EXPECT_EQ(orientationOf(std::string(70'000, 'x')), 1);
  for (std::size_t length = 0; length < 20; ++length) {
    EXPECT_EQ(orientationOf(whole.substr(0, length)), 1);
  }
}

TEST(ExifOrientation, isBetweenOneAndEightWhateverTheDataHolds) {
  const std::string whole = exifOf(6);
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string flipped = whole;
      flipped[at] = static_cast<char>(flipped[at] ^ (1 << bit));
      const int orientation = orientationOf(flipped);
      EXPECT_TRUE(orientation >= 1 && orientation <= 8);
    }
  }
}

TEST(ExifOrientation, comesToAnEndWhereTheDataGoesInCircles) {
  std::string circle = exifOf(6);
  // The next directory is the first one again.
  circle[circle.size() - 4] = 8;
  EXPECT_EQ(orientationOf(circle), 6);
}

}  // namespace pelmora::decoder
