#include "decoder/tests/PaintedHeif.h"
#include "decoder/tests/PaintedJxl.h"
#include "decoder/tests/PaintedPicture.h"
#include "decoder/tests/PaintedPng.h"
#include "decoder/VipsRows.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cmath>
#include <vector>

namespace pelmora::decoder {

namespace {

// What is shown of pictures whose colours say more than eight bits of sRGB do, or could be
// mistaken.

constexpr VideoColors kPq{.primaries = 9, .transfer = 16};

class PictureColorsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  ShownPicture showWell(const std::string& bytes, int longestSide = 1000) {
    Result<ShownPicture> shown = show(_decoder, _folder.write("picture", bytes), longestSide);
    if (!shown) throw std::runtime_error(shown.error().message);
    return *shown;
  }

  /// The colours of so many bars, in their middles.
  static std::vector<Rgb> bars(const ShownPicture& picture, int count) {
    std::vector<Rgb> colors;
    for (int i = 0; i < count; ++i)
      colors.push_back(colorAt(picture.pixels, (i + 0.5) / count, 0.5));
    return colors;
  }

  PictureDecoder _decoder;
  TemporaryFolder _folder;
};

/// Greys of 0, 26 (a grey card), 203 (reference white), 400, 700 and 1000 cd/m² in PQ.
const std::vector<std::array<double, 3>>& pqGreys() {
  static const std::vector<std::array<double, 3>> greys = [] {
    std::vector<std::array<double, 3>> all;
    for (const double signal : {0.0, 0.3798, 0.5807, 0.6526, 0.7132, 0.7518}) {
      all.push_back({signal, signal, signal});
    }
    return all;
  }();
  return greys;
}

void expectPqGreys(const std::vector<Rgb>& shown, int tolerance, const std::string& what) {
  constexpr int expected[] = {0, 101, 231, 246, 252, 255};
  for (std::size_t i = 0; i < shown.size(); ++i) {
    for (const int channel : shown[i]) {
      EXPECT_NEAR(channel, expected[i], tolerance) << what << ", bar " << i;
    }
    if (i > 0) {
      EXPECT_GT(shown[i][1], shown[i - 1][1]) << what << ", bar " << i;
    }
  }
}

/// An sRGB profile that names the colours of PQ in its 'cicp' tag.
std::string profileThatNamesPq() {
  cmsHPROFILE profile = cmsCreate_sRGBProfile();
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  // One of its tags is renamed, and points to more bytes at the end.
  const std::size_t entry = bytes.find("cprt");
  if (entry == bytes.npos) throw std::runtime_error("no such tag");
  const auto setNumber = [&](std::size_t at, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
  };
  bytes.replace(entry, 4, "cicp");
  setNumber(entry + 4, bytes.size());
  setNumber(entry + 8, 12);
  bytes += std::string("cicp\0\0\0\0\x09\x10\x00\x01", 12);
  setNumber(0, bytes.size());
  return bytes;
}

VipsPointer withBlob(const VipsPointer& picture, const char* name, const std::string& bytes) {
  VipsImage* copy = nullptr;
  if (vips_copy(picture.get(), &copy, nullptr) != 0) throw std::runtime_error("no copy");
  vips_image_set_blob_copy(copy, name, bytes.data(), bytes.size());
  return VipsPointer(copy);
}

}  // namespace

TEST_F(PictureColorsTest, hdrIsAsBrightAsAnOrdinaryPictureAndKeepsItsHighlights) {
  const VipsPointer picture = paintBars(pqGreys(), 32, 64);
  const std::string png = withPngChunk(encoded(picture, ".png"), cicpChunk(9, 16));
  expectPqGreys(bars(showWell(png), 6), 3, "PNG");
  expectPqGreys(bars(showWell(encodedHeif(picture, {.colors = kPq})), 6), 5, "HEIC");
  expectPqGreys(bars(showWell(encodedHeif(picture, {.isAvif = true, .colors = kPq})), 6), 6,
                "AVIF");
  expectPqGreys(bars(showWell(encodedJxl(picture, {.colors = kPq})), 6), 3, "JPEG XL");
  expectPqGreys(bars(showWell(encodedJxl(picture, {.colors = kPq, .isLossless = false})), 6), 6,
                "lossy JPEG XL");
}

TEST_F(PictureColorsTest, hdrIsKnownByTheTagOfAProfile) {
  const VipsPointer picture = paintBars(pqGreys(), 32, 64);
  const VipsPointer labelled = withBlob(picture, VIPS_META_ICC_NAME, profileThatNamesPq());
  for (const char* suffix : {".png", ".tif"}) {
    expectPqGreys(bars(showWell(encoded(labelled, suffix)), 6), 3, suffix);
  }
}

TEST_F(PictureColorsTest, hdrKeepsItsHues) {
  // 203, 100 and 50 cd/m² of the three primaries, and each in another's place.
  const double high = 0.5807;
  const double mid = 0.5081;
  const double low = 0.4400;
  const VipsPointer picture = paintBars({{high, mid, low}, {low, high, mid}, {mid, low, high}}, 64);
  const auto colors = bars(showWell(withPngChunk(encoded(picture, ".png"), cicpChunk(9, 16))), 3);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_GT(colors[i][i], colors[i][(i + 1) % 3] + 20) << i;
    EXPECT_GT(colors[i][(i + 1) % 3], colors[i][(i + 2) % 3] + 20) << i;
  }
}

TEST_F(PictureColorsTest, widePrimariesAreConverted) {
  VipsImage* wide = nullptr;
  ASSERT_EQ(vips_icc_transform(paintQuarters(96, 64).get(), &wide, "p3", "input_profile", "srgb",
                               nullptr),
            0);
  const VipsPointer picture(wide);
  vips_image_remove(wide, VIPS_META_ICC_NAME);
  const VideoColors p3{.primaries = 12, .transfer = 13};
  EXPECT_LE(differenceFromQuarters(
                showWell(withPngChunk(encoded(picture, ".png"), cicpChunk(12, 13))).pixels),
            2);
  EXPECT_LE(differenceFromQuarters(showWell(encodedHeif(picture, {.colors = p3})).pixels), 8);
  EXPECT_GE(differenceFromQuarters(showWell(encoded(picture, ".png")).pixels), 10);
}

TEST_F(PictureColorsTest, anEmbeddedPreviewIsNeverShown) {
  const VipsPointer preview = paintBars({{0.0, 1.0, 0.0}}, 64, 64);
  VipsImage* made = nullptr;
  ASSERT_EQ(vips_colourspace(preview.get(), &made, VIPS_INTERPRETATION_sRGB, nullptr), 0);
  const VipsPointer lurid(made);
  const std::string heic = encodedHeif(paintQuarters(512, 384), {.preview = lurid.get()});
  const VipsPointer labelled =
      withBlob(paintQuarters(512, 384), "jpeg-thumbnail-data", encoded(lurid, ".jpg"));
  const std::string jpeg = encoded(labelled, ".jpg", "[Q=95]");
  EXPECT_NE(jpeg.find("\xff\xd8", 2), jpeg.npos) << "there is no preview to test with";
  for (const int longestSide : {1000, 64, 16}) {
    EXPECT_LE(differenceFromQuarters(showWell(heic, longestSide).pixels), 8) << longestSide;
    EXPECT_LE(differenceFromQuarters(showWell(jpeg, longestSide).pixels), 8) << longestSide;
  }
}

TEST_F(PictureColorsTest, aFineGradientOfSixteenBitsStaysSmooth) {
  std::vector<std::array<double, 3>> steps;
  const auto at = [](int i) { return 0.4 + 0.04 * i / 1999; };
  for (int i = 0; i < 2000; ++i) steps.push_back({at(i), at(i), at(i)});
  const ShownPicture shown = showWell(encoded(paintBars(steps, 1, 8), ".png"), 500);
  for (int x = 5; x < 495; ++x) {
    const Rgb color = colorAt(shown.pixels, (x + 0.5) / 500, 0.5);
    EXPECT_LE(std::abs(color[1] - 255 * at(4 * x + 2)), 0.6) << x;
    EXPECT_GE(color[1], colorAt(shown.pixels, (x - 0.5) / 500, 0.5)[1]) << x;
  }
}

TEST_F(PictureColorsTest, theEdgeOfWhatIsTransparentHasNoFringe) {
  for (const int hidden : {0, 255}) {  // the colour of what is not to be seen
    const VipsPointer seen = paintPlain(203, 100, {200, 100, 50}, 255);
    const VipsPointer unseen = paintPlain(197, 100, {hidden, hidden, hidden}, 0);
    VipsImage* joined = nullptr;
    ASSERT_EQ(vips_join(seen.get(), unseen.get(), &joined, VIPS_DIRECTION_HORIZONTAL, nullptr), 0);
    const VipsPointer picture(joined);
    for (const char* suffix : {".png", ".webp", ".tif"}) {
      const ShownPicture shown = showWell(
          encoded(picture, suffix, suffix == std::string(".webp") ? "[lossless]" : ""), 40);
      for (double x = 0.0125; x < 1; x += 0.025) {
        const Rgb color = colorAt(shown.pixels, x, 0.5);
        const int alpha = alphaAt(shown.pixels, x, 0.5);
        const Rgb expected{200 * alpha / 255, 100 * alpha / 255, 50 * alpha / 255};
        // The filter overshoots beside an edge by a twentieth, as it does between opaque colours.
        EXPECT_LE(difference(color, expected), 12) << suffix << " at " << x << ", " << hidden;
      }
    }
  }
}

}  // namespace pelmora::decoder
