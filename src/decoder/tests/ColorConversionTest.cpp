#include "decoder/ColorConversion.h"

#include "decoder/tests/PaintedProfile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace pelmora::decoder {

namespace {

template <typename Sample>
Raster raster(ColorModel model, const std::vector<Sample>& samples, bool hasAlpha = false,
              bool premultiplied = false) {
  Raster picture;
  picture.format = {.size = {},
                    .model = model,
                    .hasAlpha = hasAlpha,
                    .bytesPerChannel = static_cast<int>(sizeof(Sample))};
  picture.format.size = {int(samples.size()) / picture.format.channels(), 1};
  picture.premultiplied = premultiplied;
  picture.bytes.resize(samples.size() * sizeof(Sample));
  std::memcpy(picture.bytes.data(), samples.data(), picture.bytes.size());
  return picture;
}

std::vector<int> converted(ColorConversion& conversion, Raster picture,
                           const std::string& profile = {}) {
  const RowFormat from = picture.format;
  const Result<Raster> result = conversion.toSrgb(std::move(picture), profile);
  EXPECT_TRUE(result.ok());
  EXPECT_EQ(result->format.size, from.size);
  EXPECT_EQ(result->format.model, ColorModel::rgb);
  EXPECT_EQ(result->format.bytesPerChannel, 1);
  EXPECT_EQ(result->format.hasAlpha, from.hasAlpha);
  EXPECT_FALSE(result->premultiplied);
  std::vector<int> values;
  for (const std::byte value : result->bytes) values.push_back(std::to_integer<int>(value));
  return values;
}

std::vector<int> converted(Raster picture, const std::string& profile = {}) {
  ColorConversion conversion(cmykProfile());
  return converted(conversion, std::move(picture), profile);
}

void expectNear(const std::vector<int>& got, const std::vector<int>& expected, int tolerance) {
  ASSERT_EQ(got.size(), expected.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], expected[i], tolerance) << i;
}

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

}  // namespace

TEST(ColorConversion, takesPicturesWithoutAProfileAsSrgb) {
  EXPECT_EQ(converted(raster(ColorModel::rgb, Bytes{1, 2, 3, 255, 0, 9})),
            (std::vector{1, 2, 3, 255, 0, 9}));
  EXPECT_EQ(converted(raster(ColorModel::grey, Bytes{7, 200})),
            (std::vector{7, 7, 7, 200, 200, 200}));
  EXPECT_EQ(converted(raster(ColorModel::rgb, Words{0, 65535, 257 * 100 + 128})),
            (std::vector{0, 255, 100}));
}

TEST(ColorConversion, leavesColorsThatAreInSrgbAsTheyAre) {
  EXPECT_EQ(converted(raster(ColorModel::rgb, Bytes{1, 200, 37}), srgbProfile()),
            (std::vector{1, 200, 37}));
}

TEST(ColorConversion, convertsFromDisplayP3) {
  // Known by the arithmetic of the two spaces: P3's green and red lie outside of sRGB.
  const Bytes colors{255, 0, 0, 0, 255, 0, 128, 128, 128, 200, 100, 50};
  const std::vector<int> expected{255, 0, 0, 0, 255, 0, 128, 128, 128, 214, 93, 31};
  expectNear(converted(raster(ColorModel::rgb, colors), displayP3Profile()), expected, 1);
  Words deep;
  for (const int value : colors) deep.push_back(std::uint16_t(value * 257));
  expectNear(converted(raster(ColorModel::rgb, deep), displayP3Profile()), expected, 1);
}

TEST(ColorConversion, convertsGreyByAProfileOfGrey) {
  const std::vector<int> values =
      converted(raster(ColorModel::grey, Bytes{0, 128, 255}), greyProfile(1.0));
  expectNear(values, {0, 0, 0, 188, 188, 188, 255, 255, 255}, 1);
}

TEST(ColorConversion, convertsGreyByAProfileOfRgb) {
  expectNear(converted(raster(ColorModel::grey, Bytes{0, 128, 255}), displayP3Profile()),
             {0, 0, 0, 128, 128, 128, 255, 255, 255}, 1);
  expectNear(converted(raster(ColorModel::grey, Words{30000, 65535}, true), displayP3Profile()),
             {117, 117, 117, 255}, 1);
}

TEST(ColorConversion, convertsInksByTheirProfile) {
  const Bytes inks{0, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 255};
  expectNear(converted(raster(ColorModel::cmyk, inks), cmykProfile()),
             {255, 255, 255, 0, 255, 255, 0, 0, 0}, 4);
}

TEST(ColorConversion, convertsInksWithoutAProfileByTheOneItWasGiven) {
  const Bytes inks{100, 20, 200, 10};
  EXPECT_EQ(converted(raster(ColorModel::cmyk, inks)),
            converted(raster(ColorModel::cmyk, inks), cmykProfile()));
  EXPECT_EQ(converted(raster(ColorModel::cmyk, inks), displayP3Profile()),
            converted(raster(ColorModel::cmyk, inks), cmykProfile()));
}

TEST(ColorConversion, convertsInksWithoutAnyProfileByWhatTheyLeaveOfTheLight) {
  ColorConversion conversion;
  EXPECT_EQ(converted(conversion, raster(ColorModel::cmyk, Bytes{0, 255, 51, 0, 0, 0, 0, 51})),
            (std::vector{255, 0, 204, 204, 204, 204}));
  EXPECT_EQ(converted(conversion, raster(ColorModel::cmyk, Words{0, 65535, 0, 0, 32896}, true)),
            (std::vector{255, 0, 255, 128}));
}

TEST(ColorConversion, leavesAProfileUnusedThatIsBrokenOrOfOtherColors) {
  for (const std::string& profile : {std::string("broken"), std::string(500, '\xff'),
                                     greyProfile(1), cmykProfile(), linkProfile()}) {
    EXPECT_EQ(converted(raster(ColorModel::rgb, Bytes{9, 99, 199}), profile),
              (std::vector{9, 99, 199}));
  }
}

TEST(ColorConversion, dividesTheAlphaOut) {
  EXPECT_EQ(
      converted(raster(ColorModel::rgb, Words{32768, 16384, 0, 32768, 7, 7, 7, 0}, true, true)),
      (std::vector{255, 128, 0, 128, 0, 0, 0, 0}));
  // The filter may leave a colour brighter than its alpha.
  EXPECT_EQ(converted(raster(ColorModel::grey, Words{20000, 10000}, true, true)),
            (std::vector{255, 255, 255, 39}));
}

TEST(ColorConversion, keepsTheAlphaOfConvertedPictures) {
  expectNear(converted(raster(ColorModel::rgb, Words{25700, 12850, 6425, 32896}, true, true),
                       displayP3Profile()),
             {214, 93, 31, 128}, 2);
  expectNear(converted(raster(ColorModel::rgb, Bytes{200, 100, 50, 77}, true), displayP3Profile()),
             {214, 93, 31, 77}, 1);
}

TEST(ColorConversion, convertsPictureAfterPictureOfDifferentKinds) {
  ColorConversion conversion(cmykProfile());
  for (int round = 0; round < 2; ++round) {
    const auto red = [&](const std::string& profile) {
      return converted(conversion, raster(ColorModel::rgb, Bytes{200, 100, 50}), profile);
    };
    expectNear(red(displayP3Profile()), {214, 93, 31}, 1);
    EXPECT_EQ(red({}), (std::vector{200, 100, 50}));
    expectNear(red(swappedProfile()), {50, 200, 100}, 1);
    expectNear(converted(conversion, raster(ColorModel::grey, Bytes{128}), greyProfile(1)),
               {188, 188, 188}, 1);
  }
}

}  // namespace pelmora::decoder
