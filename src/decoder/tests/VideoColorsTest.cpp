#include "decoder/VideoColors.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <array>
#include <cmath>
#include <cstdint>

namespace pelmora::decoder {

namespace {

constexpr VideoColors kPq{.primaries = 9, .transfer = 16};
constexpr VideoColors kHlg{.primaries = 9, .transfer = 18};

using Rgb = std::array<int, 3>;

/// What a display shows, 8 bits in sRGB, of a colour whose channels are fractions of 1.
Rgb shown(const std::string& profile, const std::array<double, 3>& color) {
  cmsHPROFILE from = cmsOpenProfileFromMem(profile.data(), cmsUInt32Number(profile.size()));
  cmsHPROFILE to = cmsCreate_sRGBProfile();
  cmsHTRANSFORM transform = cmsCreateTransform(from, TYPE_RGB_16, to, TYPE_RGB_8,
                                               INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE);
  std::array<std::uint16_t, 3> in{};
  for (std::size_t i = 0; i < 3; ++i) in[i] = std::uint16_t(std::lround(65535 * color[i]));
  std::array<std::uint8_t, 3> out{};
  cmsDoTransform(transform, in.data(), out.data(), 1);
  cmsDeleteTransform(transform);
  cmsCloseProfile(to);
  cmsCloseProfile(from);
  return {out[0], out[1], out[2]};
}

int grey(const std::string& profile, double signal) {
  return shown(profile, {signal, signal, signal})[1];
}

/// A profile of nothing but its table of tags, with one tag at `offset`.
std::string withTag(const std::string& signature, std::uint32_t offset, const std::string& data) {
  const auto number = [](std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += char(value >> shift & 0xFF);
    return bytes;
  };
  return std::string(128, '\0') + number(1) + signature + number(offset) +
         number(std::uint32_t(data.size())) + data;
}

const std::string kCicp("cicp\0\0\0\0\x09\x10\x00\x01", 12);

}  // namespace

TEST(VideoColors, needNoProfileForSrgbAndForWhatIsUnknown) {
  EXPECT_EQ(profileOf({}), "");
  EXPECT_EQ(profileOf({.primaries = 1, .transfer = 13}), "");
  EXPECT_EQ(profileOf({.primaries = 1, .transfer = 1}), "");
  EXPECT_EQ(profileOf({.primaries = 200, .transfer = 13}), "");
  EXPECT_EQ(profileOf({.primaries = 9, .transfer = 200}), "");
  EXPECT_EQ(profileOf({.primaries = -1, .transfer = -1}), "");
}

TEST(VideoColors, makeTheSameProfileEachTime) { EXPECT_EQ(profileOf(kPq), profileOf(kPq)); }

TEST(VideoColors, keepGreysOfWidePrimariesAsTheyAre) {
  for (const int primaries : {5, 6, 7, 9, 11, 12}) {
    const std::string profile = profileOf({.primaries = primaries, .transfer = 13});
    ASSERT_NE(profile, "") << primaries;
    for (const double signal : {0.0, 0.1, 0.5, 0.75, 1.0}) {
      const Rgb color = shown(profile, {signal, signal, signal});
      for (const int channel : color) EXPECT_NEAR(channel, 255 * signal, 1) << primaries;
    }
  }
}

TEST(VideoColors, makeWidePrimariesStronger) {
  const Rgb p3 = shown(profileOf({.primaries = 12, .transfer = 13}), {0.6, 0.4, 0.4});
  const Rgb bt2020 = shown(profileOf({.primaries = 9, .transfer = 13}), {0.6, 0.4, 0.4});
  EXPECT_GT(p3[0], 155);
  EXPECT_LT(p3[1], 102);
  EXPECT_GT(bt2020[0], p3[0]);
}

TEST(VideoColors, readOtherTransfers) {
  EXPECT_NEAR(grey(profileOf({.primaries = 1, .transfer = 8}), 0.2140), 128, 1);
  EXPECT_NEAR(grey(profileOf({.primaries = 1, .transfer = 4}), 0.5), 128, 2);
  EXPECT_LT(grey(profileOf({.primaries = 1, .transfer = 5}), 0.5), 115);
}

TEST(VideoColors, showReferenceWhiteOfHdrNearlyWhite) {
  // 203 cd/m² is 58 % of PQ and 75 % of HLG.
  EXPECT_NEAR(grey(profileOf(kPq), 0.5807), 231, 3);
  EXPECT_NEAR(grey(profileOf(kHlg), 0.75), 231, 3);
}

TEST(VideoColors, showAMidGreyOfHdrAsOfAnOrdinaryPicture) {
  // A grey card, 26 cd/m²: 38 % of PQ, as in video of ordinary range, whose display shows 13 %.
  EXPECT_NEAR(grey(profileOf(kPq), 0.3798), 101, 3);
  EXPECT_NEAR(grey(profileOf(kHlg), 0.38), 101, 12);
}

TEST(VideoColors, keepStepsInTheHighlightsUpToTheBrightest) {
  for (const VideoColors& colors : {kPq, kHlg}) {
    const std::string profile = profileOf(colors);
    const bool isPq = colors.transfer == 16;
    const double end = isPq ? 0.7518 : 1.0;  // 1000 cd/m²
    int last = grey(profile, 0);
    EXPECT_EQ(last, 0);
    for (int step = 1; step <= 20; ++step) {
      const int next = grey(profile, end * step / 20);
      EXPECT_GE(next, last + (step < 2 ? 0 : 1)) << step;
      last = next;
    }
    EXPECT_GE(last, 254);
    EXPECT_EQ(grey(profile, 1), 255);
  }
}

TEST(VideoColors, keepTheHueOfHdr) {
  // An orange of 203, 100 and 50 cd/m² in PQ: its channels keep their order and stand apart.
  const Rgb color = shown(profileOf(kPq), {0.5807, 0.5081, 0.4400});
  EXPECT_GT(color[0], color[1] + 40);
  EXPECT_GT(color[1], color[2] + 30);
}

TEST(VideoColors, areReadFromTheTagOfAProfile) {
  const VideoColors colors = videoColorsOf(withTag("cicp", 144, kCicp));
  EXPECT_EQ(colors.primaries, 9);
  EXPECT_EQ(colors.transfer, 16);
}

TEST(VideoColors, areUnspecifiedInAProfileThatDoesNotNameThem) {
  for (const std::string& profile :
       {std::string(), std::string(131, '\0'), std::string(500, '\xFF'), profileOf(kPq),
        withTag("desc", 144, kCicp), withTag("cicp", 145, kCicp),
        withTag("cicp", 0xFFFFFFFF, kCicp), withTag("cicp", 144, kCicp.substr(0, 11)),
        withTag("cicp", 144, "text" + kCicp)}) {
    const VideoColors colors = videoColorsOf(profile);
    EXPECT_EQ(colors.primaries, 2);
    EXPECT_EQ(colors.transfer, 2);
  }
}

}  // namespace pelmora::decoder
