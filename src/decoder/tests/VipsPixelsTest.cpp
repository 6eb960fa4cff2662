#include "decoder/VipsPixels.h"

#include "decoder/tests/PaintedPicture.h"
#include "decoder/VipsLibrary.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace pelmora::decoder {

namespace {

class VipsPixelsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  /// One pixel of that format.
  template <typename T>
  static ImagePointer pixel(std::vector<T> bands, VipsBandFormat format, VipsInterpretation kind) {
    VipsImage* image = vips_image_new_from_memory_copy(bands.data(), bands.size() * sizeof(T), 1, 1,
                                                       static_cast<int>(bands.size()), format);
    image->Type = kind;
    return ImagePointer(image);
  }

  static std::vector<int> numbers(const PlainPixels& pixels) {
    std::size_t size = 0;
    void* memory = vips_image_write_to_memory(pixels.image.get(), &size);
    std::vector<int> found;
    for (int i = 0; i < pixels.format.channels(); ++i) {
      const auto* bytes = static_cast<const std::uint8_t*>(memory);
      const auto* deep = static_cast<const std::uint16_t*>(memory);
      found.push_back(pixels.format.bytesPerChannel == 2 ? deep[i] : bytes[i]);
    }
    EXPECT_EQ(size, pixels.format.bytesPerRow());
    g_free(memory);
    return found;
  }
};

using Bytes = std::vector<std::uint8_t>;
using Shorts = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

}  // namespace

TEST_F(VipsPixelsTest, keepBytesAsTheyAre) {
  for (const std::size_t bands : {1U, 2U, 3U, 4U}) {
    const auto pixels =
        plainPixels(pixel(Bytes(bands, 7), VIPS_FORMAT_UCHAR,
                          bands < 3 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
    ASSERT_TRUE(pixels.ok());
    EXPECT_EQ(pixels->format.model, bands < 3 ? ColorModel::grey : ColorModel::rgb);
    EXPECT_EQ(pixels->format.hasAlpha, bands % 2 == 0);
    EXPECT_EQ(numbers(*pixels), std::vector<int>(bands, 7));
    EXPECT_EQ(pixels->profile, "");
  }
}

TEST_F(VipsPixelsTest, keepSixteenBits) {
  const auto pixels =
      plainPixels(pixel(Shorts{1, 500, 65535}, VIPS_FORMAT_USHORT, VIPS_INTERPRETATION_RGB16));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(numbers(*pixels), (std::vector<int>{1, 500, 65535}));
}

TEST_F(VipsPixelsTest, dropBandsBeyondAlpha) {
  const auto pixels =
      plainPixels(pixel(Bytes{1, 2, 3, 4, 5, 6}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(numbers(*pixels), (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(VipsPixelsTest, readInksInEightBits) {
  const auto eight =
      plainPixels(pixel(Bytes{1, 2, 3, 4, 9}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_CMYK));
  ASSERT_TRUE(eight.ok());
  EXPECT_EQ(eight->format.model, ColorModel::cmyk);
  EXPECT_EQ(numbers(*eight), (std::vector<int>{1, 2, 3, 4}));
  const auto deep = plainPixels(
      pixel(Shorts{0, 257, 25700, 65535}, VIPS_FORMAT_USHORT, VIPS_INTERPRETATION_CMYK));
  ASSERT_TRUE(deep.ok());
  EXPECT_EQ(numbers(*deep), (std::vector<int>{0, 1, 100, 255}));
}

TEST_F(VipsPixelsTest, readFractionsFromZeroToOneAsLinearLight) {
  const auto pixels =
      plainPixels(pixel(Floats{-1.0F, 0.5F, 3.0F}, VIPS_FORMAT_FLOAT, VIPS_INTERPRETATION_scRGB));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(numbers(*pixels), (std::vector<int>{0, 32768, 65535}));
  EXPECT_NE(pixels->profile, "");
}

TEST_F(VipsPixelsTest, readWholeNumbersByTheirUpperBits) {
  const auto pixels = plainPixels(
      pixel(std::vector<std::uint32_t>{0x80000000U}, VIPS_FORMAT_UINT, VIPS_INTERPRETATION_B_W));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(numbers(*pixels), std::vector<int>{0x8000});
}

TEST_F(VipsPixelsTest, convertMeasuredColours) {
  const auto pixels =
      plainPixels(pixel(Floats{100, 0, 0}, VIPS_FORMAT_FLOAT, VIPS_INTERPRETATION_LAB));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(pixels->format.model, ColorModel::rgb);
  for (const int number : numbers(*pixels)) EXPECT_NEAR(number, 65535, 300);
}

TEST_F(VipsPixelsTest, refuseComplexNumbers) {
  const auto pixels =
      plainPixels(pixel(Floats{1, 2}, VIPS_FORMAT_FLOAT, VIPS_INTERPRETATION_FOURIER));
  const auto complex = plainPixels(pixel(std::vector<std::array<float, 2>>{{1, 2}},
                                         VIPS_FORMAT_COMPLEX, VIPS_INTERPRETATION_FOURIER));
  EXPECT_TRUE(pixels.ok());
  ASSERT_FALSE(complex.ok());
  EXPECT_EQ(complex.error().message, "its colours are of no known kind");
}

TEST_F(VipsPixelsTest, handOutTheProfile) {
  ImagePointer image = pixel(Bytes{1, 2, 3}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB);
  vips_image_set_blob_copy(image.get(), VIPS_META_ICC_NAME, "profile", 7);
  const auto pixels = plainPixels(std::move(image));
  ASSERT_TRUE(pixels.ok());
  EXPECT_EQ(pixels->profile, "profile");
}

}  // namespace pelmora::decoder
