#include "decoder/MatrixShaper.h"

#include "decoder/IccProfile.h"
#include "decoder/tests/PaintedProfile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace pelmora::decoder {

namespace {

std::unique_ptr<MatrixShaper> shaperOf(const std::string& bytes) {
  const ColorContext context = makeColorContext();
  const ProfilePointer profile = openProfile(context.get(), bytes);
  return MatrixShaper::make(profile.get());
}

std::vector<std::uint8_t> manyColors() {
  std::vector<std::uint8_t> colors;
  for (int red = 0; red <= 255; red += 15) {
    for (int green = 0; green <= 255; green += 17) {
      for (int blue = 0; blue <= 255; blue += 15) {
        for (const int value : {red, green, blue}) {
          colors.push_back(static_cast<std::uint8_t>(value));
        }
      }
    }
  }
  return colors;
}

/// What the colour library makes of them when it takes no short cuts.
std::vector<std::uint8_t> byLibrary(const std::string& bytes,
                                    const std::vector<std::uint8_t>& from) {
  const ColorContext context = makeColorContext();
  const ProfilePointer profile = openProfile(context.get(), bytes);
  const ProfilePointer srgb(cmsCreate_sRGBProfileTHR(context.get()));
  const TransformPointer transform(
      cmsCreateTransformTHR(context.get(), profile.get(), TYPE_RGB_8, srgb.get(), TYPE_RGB_8,
                            INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE));
  std::vector<std::uint8_t> to(from.size());
  cmsDoTransform(transform.get(), from.data(), to.data(), cmsUInt32Number(from.size() / 3));
  return to;
}

}  // namespace

TEST(MatrixShaper, agreesWithTheColorLibrary) {
  const std::vector<std::uint8_t> from = manyColors();
  for (const std::string& profile : {displayP3Profile(), srgbProfile(), swappedProfile()}) {
    const auto shaper = shaperOf(profile);
    ASSERT_TRUE(shaper);
    std::vector<std::uint8_t> to(from.size());
    shaper->convert(from, to);
    const std::vector<std::uint8_t> expected = byLibrary(profile, from);
    int different = 0;
    for (std::size_t i = 0; i < to.size(); ++i) {
      ASSERT_LE(std::abs(to[i] - expected[i]), 1);
      if (to[i] != expected[i]) ++different;
    }
    EXPECT_LE(different, int(to.size()) / 50);
  }
}

TEST(MatrixShaper, convertsInPlace) {
  const auto shaper = shaperOf(displayP3Profile());
  std::vector<std::uint8_t> colors = manyColors();
  std::vector<std::uint8_t> apart(colors.size());
  shaper->convert(colors, apart);
  shaper->convert(colors, colors);
  EXPECT_EQ(colors, apart);
}

TEST(MatrixShaper, keepsGreysGrey) {
  const auto shaper = shaperOf(displayP3Profile());
  for (int grey = 0; grey <= 255; ++grey) {
    std::vector<std::uint8_t> color(3, std::uint8_t(grey));
    shaper->convert(color, color);
    for (const int value : color) EXPECT_NEAR(value, grey, 1);
  }
}

TEST(MatrixShaper, isOnlyForProfilesOfItsKind) {
  EXPECT_FALSE(shaperOf(greyProfile(2.2)));
  EXPECT_FALSE(shaperOf(cmykProfile()));
}

}  // namespace pelmora::decoder
