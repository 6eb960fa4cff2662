#include "decoder/PictureDecoder.h"

#include "decoder/tests/PaintedBmp.h"
#include "decoder/tests/PaintedPicture.h"
#include "decoder/tests/PaintedPng.h"
#include "decoder/VipsRows.h"

#include <gmock/gmock.h>

#include <vector>

namespace pelmora::decoder {

namespace {

class PictureDecoderTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  ShownPicture showWell(const FilePath& file, int longestSide = 1000) {
    Result<ShownPicture> shown = show(_decoder, file, longestSide);
    if (shown.ok()) return *shown;
    ADD_FAILURE() << shown.error().message;
    return {{}, {}, {{1, 1}, false, std::vector<std::uint8_t>(4)}};
  }

  /// Why a file is refused: one line without an end, and not empty.
  std::string reason(const FilePath& file) {
    const Result<ShownPicture> image = show(_decoder, file);
    EXPECT_FALSE(image.ok());
    if (image.ok()) return {};
    EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
    return image.error().message;
  }

  PictureDecoder _decoder;
  TemporaryFolder _folder;
};

struct Format {
  std::string suffix;
  std::string options;
  int tolerance;
};

class EveryFormat : public PictureDecoderTest, public testing::WithParamInterface<Format> {};

}  // namespace

TEST_P(EveryFormat, isReadWithItsSizeAndColours) {
  const auto& [suffix, options, tolerance] = GetParam();
  const ShownPicture image = showWell(save(_folder, paintQuarters(), "picture" + suffix, options));
  EXPECT_EQ(image.size, (Size{48, 32}));
  EXPECT_EQ(image.pixels.size, (PixelSize{48, 32}));
  EXPECT_TRUE(image.pixels.opaque);
  EXPECT_EQ(image.pixels.bytes.size(), 48U * 32U * 4U);
  EXPECT_LE(differenceFromQuarters(image.pixels), tolerance);
}

TEST_P(EveryFormat, isReadSmallerAndKeepsItsOwnSize) {
  const auto& [suffix, options, tolerance] = GetParam();
  const ShownPicture image =
      showWell(save(_folder, paintQuarters(96, 64), "picture" + suffix, options), 24);
  EXPECT_EQ(image.size, (Size{96, 64}));
  EXPECT_EQ(image.pixels.size, (PixelSize{24, 16}));
  EXPECT_LE(differenceFromQuarters(image.pixels), tolerance);
}

TEST_P(EveryFormat, isRefusedWhenItsEndIsMissing) {
  std::string bytes = encoded(paintQuarters(96, 64), GetParam().suffix, GetParam().options);
  bytes.resize(bytes.size() / 2);
  EXPECT_NE(reason(_folder.write("half" + GetParam().suffix, bytes)), "");
}

TEST_P(EveryFormat, isRefusedOrReadButNeverCrashesWhenItsBytesAreWrong) {
  const std::string bytes = encoded(paintQuarters(), GetParam().suffix, GetParam().options);
  std::uint32_t state = 1;
  for (int round = 0; round < 20; ++round) {
    std::string wrong = bytes;
    for (int change = 0; change < 3; ++change) {
      state = state * 1664525U + 1013904223U;
      wrong[(state >> 8) % wrong.size()] = static_cast<char>(state >> 24);
    }
    const Result<ShownPicture> image = show(_decoder, _folder.write("wrong", wrong), 64);
    if (image.ok()) {
      EXPECT_GT(image->pixels.bytes.size(), 0U);
    } else {
      EXPECT_FALSE(image.error().message.empty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    PictureDecoder, EveryFormat,
    testing::Values(Format{".jpg", "[Q=95]", 6}, Format{".png", "", 0},
                    Format{".webp", "[Q=95]", 8}, Format{".tif", "[compression=deflate]", 0},
                    Format{".gif", "", 2}, Format{".heic", "[Q=90,effort=0]", 8},
                    Format{".avif", "[Q=90,effort=0]", 8}, Format{".jxl", "[Q=95,effort=3]", 8}),
    [](const testing::TestParamInfo<Format>& format) { return format.param.suffix.substr(1); });

TEST_F(PictureDecoderTest, readsEveryBmp) {
  for (const BmpKind& kind : bmpKinds()) {
    const ShownPicture image = showWell(_folder.write(kind.name, paintedBmp(kind, {48, 32})));
    EXPECT_EQ(image.facts.format, "BMP") << kind.name;
    EXPECT_EQ(image.pixels.size, (PixelSize{48, 32})) << kind.name;
    const auto [red, green, blue, alpha] = bmpColorAt(kind, 9, 6);
    const Rgb shown{red * alpha / 255, green * alpha / 255, blue * alpha / 255};
    EXPECT_LE(difference(colorAt(image.pixels, 9.5 / 48, 6.5 / 32), shown), 1) << kind.name;
    EXPECT_EQ(image.pixels.opaque, alpha == 255) << kind.name;
  }
}

class EveryOrientation : public PictureDecoderTest, public testing::WithParamInterface<int> {};

TEST_P(EveryOrientation, standsUprightAtFullAndReducedSize) {
  const int orientation = GetParam();
  for (const char* name : {"stored.jpg", "stored.tif", "stored.webp"}) {
    const FilePath file =
        save(_folder, storeTurned(paintQuarters(96, 64), orientation), name, "[Q=95]");
    for (const int longestSide : {1000, 24}) {
      const ShownPicture image = showWell(file, longestSide);
      EXPECT_EQ(image.size, (Size{96, 64})) << name;
      EXPECT_LE(differenceFromQuarters(image.pixels), 8) << name << " at " << longestSide;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(PictureDecoder, EveryOrientation, testing::Range(1, 9));

TEST_F(PictureDecoderTest, turnsAnHeicByItsOwnRotationAlone) {
  // The container's rotation (none here) counts; an EXIF orientation beside it is a leftover.
  const VipsPointer upright = paintQuarters(96, 64);
  VipsImage* copy = nullptr;
  ASSERT_EQ(vips_copy(upright.get(), &copy, nullptr), 0);
  const VipsPointer labelled(copy);
  vips_image_set_int(labelled.get(), VIPS_META_ORIENTATION, 6);
  for (const char* name : {"a.heic", "a.avif"}) {
    const ShownPicture image = showWell(save(_folder, labelled, name, "[Q=90,effort=0]"));
    EXPECT_EQ(image.size, (Size{96, 64}));
    EXPECT_LE(differenceFromQuarters(image.pixels), 8) << name;
  }
}

TEST_F(PictureDecoderTest, neverEnlarges) {
  const ShownPicture image = showWell(save(_folder, paintQuarters(), "a.png"), 4000);
  EXPECT_EQ(image.pixels.size, (PixelSize{48, 32}));
}

TEST_F(PictureDecoderTest, boundsTheLongerSideOfATallPicture) {
  const ShownPicture image = showWell(save(_folder, paintQuarters(32, 96), "a.png"), 48);
  EXPECT_EQ(image.pixels.size, (PixelSize{16, 48}));
}

TEST_F(PictureDecoderTest, keepsAPixelOfTheThinnestPicture) {
  const ShownPicture image = showWell(save(_folder, paintQuarters(2000, 2), "a.png"), 20);
  EXPECT_EQ(image.pixels.size, (PixelSize{20, 1}));
}

TEST_F(PictureDecoderTest, readsAtLeastOnePixelWhateverSizeIsAsked) {
  const FilePath file = save(_folder, paintQuarters(), "a.png");
  for (const int longestSide : {1, 0, -5}) {
    EXPECT_EQ(showWell(file, longestSide).pixels.size, (PixelSize{1, 1}));
  }
}

TEST_F(PictureDecoderTest, shrinksALargeJpegInTheDecoderWithoutChangingItsColours) {
  const FilePath file = save(_folder, paintQuarters(800, 600), "a.jpg", "[Q=95]");
  for (const int longestSide : {390, 190, 90, 45}) {  // decoded at 1, 1/2, 1/4 and 1/8
    const ShownPicture image = showWell(file, longestSide);
    EXPECT_EQ(image.size, (Size{800, 600}));
    EXPECT_EQ(image.pixels.size.width, longestSide);
    EXPECT_LE(differenceFromQuarters(image.pixels), 4);
  }
}

TEST_F(PictureDecoderTest, premultipliesAlpha) {
  const ShownPicture image =
      showWell(save(_folder, paintPlain(8, 8, {200, 100, 50}, 128), "a.png"));
  EXPECT_FALSE(image.pixels.opaque);
  EXPECT_EQ(alphaAt(image.pixels, 0.5, 0.5), 128);
  EXPECT_LE(difference(colorAt(image.pixels, 0.5, 0.5), {100, 50, 25}), 1);
}

TEST_F(PictureDecoderTest, keepsAlphaInEveryFormatThatHasIt) {
  for (const char* name : {"a.png", "a.webp", "a.tif", "a.jxl", "a.avif"}) {
    const ShownPicture image =
        showWell(save(_folder, paintPlain(64, 64, {200, 100, 50}, 64), name), 16);
    EXPECT_FALSE(image.pixels.opaque) << name;
    EXPECT_NEAR(alphaAt(image.pixels, 0.5, 0.5), 64, 3) << name;
    EXPECT_LE(difference(colorAt(image.pixels, 0.5, 0.5), {50, 25, 13}), 5) << name;
  }
}

TEST_F(PictureDecoderTest, seesThatAnAlphaChannelHidesNothing) {
  const ShownPicture image =
      showWell(save(_folder, paintPlain(8, 8, {200, 100, 50}, 255), "a.png"));
  EXPECT_TRUE(image.pixels.opaque);
  EXPECT_EQ(colorAt(image.pixels, 0.5, 0.5), (Rgb{200, 100, 50}));
}

TEST_F(PictureDecoderTest, readsGreyPictures) {
  VipsImage* grey = nullptr;
  ASSERT_EQ(vips_colourspace(paintQuarters().get(), &grey, VIPS_INTERPRETATION_B_W, nullptr), 0);
  const VipsPointer picture(grey);
  for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
    const ShownPicture image = showWell(save(_folder, picture, name));
    EXPECT_LE(difference(colorAt(image.pixels, 0.8, 0.8), kWhite), 3) << name;
    const Rgb dark = colorAt(image.pixels, 0.2, 0.8);
    EXPECT_TRUE(dark[0] == dark[1] && dark[1] == dark[2] && dark[0] < 120) << name;
  }
}

TEST_F(PictureDecoderTest, readsSixteenBitPictures) {
  VipsImage* deep = nullptr;
  ASSERT_EQ(vips_colourspace(paintQuarters().get(), &deep, VIPS_INTERPRETATION_RGB16, nullptr), 0);
  const VipsPointer picture(deep);
  for (const char* name : {"a.png", "a.tif"}) {
    EXPECT_LE(differenceFromQuarters(showWell(save(_folder, picture, name)).pixels), 1) << name;
  }
}

TEST_F(PictureDecoderTest, readsPicturesOfFewColours) {
  const FilePath file = save(_folder, paintQuarters(), "a.png", "[palette,bitdepth=2]");
  EXPECT_LE(differenceFromQuarters(showWell(file).pixels), 4);
}

TEST_F(PictureDecoderTest, readsPicturesStoredInSeveralPasses) {
  for (const char* name : {"a.jpg", "a.png"}) {
    const FilePath file = save(_folder, paintQuarters(), name, "[interlace]");
    EXPECT_LE(differenceFromQuarters(showWell(file).pixels), 8) << name;
  }
}

TEST_F(PictureDecoderTest, convertsFromThePicturesOwnProfile) {
  VipsImage* wide = nullptr;
  ASSERT_EQ(
      vips_icc_transform(paintQuarters().get(), &wide, "p3", "input_profile", "srgb", nullptr), 0);
  const VipsPointer picture(wide);
  for (const char* name : {"a.jpg", "a.png", "a.webp", "a.tif", "a.heic", "a.avif", "a.jxl"}) {
    const FilePath file = save(_folder, picture, name, "[Q=95]");
    EXPECT_LE(differenceFromQuarters(showWell(file).pixels), 9) << name;
  }
  // Unconverted, the same numbers are other colours.
  const FilePath stripped = save(_folder, picture, "b.png", "[strip]");
  EXPECT_GE(difference(colorAt(showWell(stripped).pixels, 0.2, 0.2), kRed), 10);
}

TEST_F(PictureDecoderTest, leavesColoursThatAreInSrgbAlone) {
  VipsImage* labelled = nullptr;
  ASSERT_EQ(vips_icc_transform(paintQuarters().get(), &labelled, "srgb", "input_profile", "srgb",
                               nullptr),
            0);
  const VipsPointer picture(labelled);
  EXPECT_LE(differenceFromQuarters(showWell(save(_folder, picture, "a.png")).pixels), 1);
}

TEST_F(PictureDecoderTest, convertsFromCmyk) {
  VipsImage* printed = nullptr;
  ASSERT_EQ(
      vips_icc_transform(paintQuarters().get(), &printed, "cmyk", "input_profile", "srgb", nullptr),
      0);
  const VipsPointer picture(printed);
  for (const char* options : {"", "[strip]"}) {  // with the profile, and as most are: without
    for (const char* name : {"a.jpg", "a.tif"}) {
      const ShownPicture image = showWell(save(_folder, picture, name, options));
      EXPECT_TRUE(image.pixels.opaque);
      EXPECT_LE(differenceFromQuarters(image.pixels), 40) << name << options;
    }
  }
}

TEST_F(PictureDecoderTest, ignoresABrokenProfile) {
  VipsImage* copy = nullptr;
  ASSERT_EQ(vips_copy(paintQuarters().get(), &copy, nullptr), 0);
  const VipsPointer picture(copy);
  const std::string garbage(400, 'x');
  vips_image_set_blob_copy(picture.get(), VIPS_META_ICC_NAME, garbage.data(), garbage.size());
  for (const char* name : {"a.jpg", "a.webp", "a.tif"}) {
    const ShownPicture image = showWell(save(_folder, picture, name, "[Q=95]"));
    EXPECT_LE(differenceFromQuarters(image.pixels), 8) << name;
  }
}

TEST_F(PictureDecoderTest, ignoresTheProfileOfAnotherKindOfColours) {
  VipsImage* printed = nullptr;
  ASSERT_EQ(
      vips_icc_transform(paintQuarters().get(), &printed, "cmyk", "input_profile", "srgb", nullptr),
      0);
  const VipsPointer cmyk(printed);
  const void* profile = nullptr;
  std::size_t size = 0;
  ASSERT_EQ(vips_image_get_blob(cmyk.get(), VIPS_META_ICC_NAME, &profile, &size), 0);
  VipsImage* copy = nullptr;
  ASSERT_EQ(vips_copy(paintQuarters().get(), &copy, nullptr), 0);
  const VipsPointer picture(copy);
  vips_image_set_blob_copy(picture.get(), VIPS_META_ICC_NAME, profile, size);
  const ShownPicture image = showWell(save(_folder, picture, "a.tif"));
  EXPECT_LE(differenceFromQuarters(image.pixels), 8);
}

TEST_F(PictureDecoderTest, showsTheFirstFrameOfAnAnimation) {
  VipsImage* frames[] = {paintQuarters().release(), paintPlain(48, 32, {0, 0, 0}, 255).release()};
  VipsImage* opaque = nullptr;
  ASSERT_EQ(vips_extract_band(frames[1], &opaque, 0, "n", 3, nullptr), 0);
  VipsImage* both[] = {frames[0], opaque};
  VipsImage* joined = nullptr;
  ASSERT_EQ(vips_arrayjoin(both, &joined, 2, "across", 1, nullptr), 0);
  const VipsPointer animation(joined);
  vips_image_set_int(animation.get(), VIPS_META_PAGE_HEIGHT, 32);
  for (VipsImage* frame : {frames[0], frames[1], opaque}) g_object_unref(frame);
  for (const char* name : {"a.gif", "a.webp"}) {
    const ShownPicture image = showWell(save(_folder, animation, name, ""));
    EXPECT_EQ(image.size, (Size{48, 32})) << name;
    EXPECT_LE(differenceFromQuarters(image.pixels), 30) << name;
  }
}

TEST_F(PictureDecoderTest, knowsAPictureByItsContentsNotByItsName) {
  const std::string png = encoded(paintQuarters(), ".png");
  EXPECT_EQ(differenceFromQuarters(showWell(_folder.write("a.jpg", png)).pixels), 0);
  EXPECT_EQ(differenceFromQuarters(showWell(_folder.write("no suffix", png)).pixels), 0);
}

TEST_F(PictureDecoderTest, readsFilesOfAnyName) {
  const std::string png = encoded(paintQuarters(), ".png");
  for (const char* name :
       {"caf\xe9.png", "two\nlines.png", "[page=3].png", "a[b=c]", "-", "%s%n"}) {
    EXPECT_EQ(differenceFromQuarters(showWell(_folder.write(name, png)).pixels), 0) << name;
  }
}

TEST_F(PictureDecoderTest, refusesWhatIsNoPicture) {
  for (const char* content : {"", "\xff\xd8", "Dear Sir or Madam,\n"}) {
    EXPECT_NE(reason(_folder.write("no picture.jpg", content)), "");
  }
}

TEST_F(PictureDecoderTest, keepsTheReadersOfOtherFormatsBlocked) {
  EXPECT_EQ(reason(_folder.write("a.ppm", "P6 1 1 255\nabc")),
            "it is not a picture of a known format");
  EXPECT_EQ(reason(_folder.write("a.svg",
                                 "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" "
                                 "height=\"9\"><rect width=\"9\" height=\"9\"/></svg>")),
            "it is not a picture of a known format");
}

TEST_F(PictureDecoderTest, refusesAnEnormousPictureByItsHeader) {
  EXPECT_EQ(reason(_folder.write("a.png", pngHeader(40'000, 40'000, 1, 0))),
            "it is 40000 × 40000 pixels, and no more than 500 megapixels of its kind are read");
}

TEST_F(PictureDecoderTest, allowsFewerPixelsWhereThePictureIsHeldWhole) {
  EXPECT_EQ(reason(_folder.write("a.png", pngHeader(20'000, 20'000, 8, 1))),
            "it is 20000 × 20000 pixels, and no more than 375 megapixels of its kind are read");
  // Row by row the same size is within the limits; there it is the missing rows that are refused.
  EXPECT_THAT(reason(_folder.write("b.png", pngHeader(20'000, 20'000, 8, 0))),
              testing::StartsWith("it is damaged"));
}

}  // namespace pelmora::decoder
