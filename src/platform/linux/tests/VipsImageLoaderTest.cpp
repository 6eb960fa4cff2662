#include "platform/linux/VipsImageLoader.h"

#include "platform/linux/tests/PaintedPicture.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <thread>
#include <vector>

namespace pelmora::platform {

namespace {

class VipsImageLoaderTest : public testing::Test {
 protected:
  Image loadWell(const FilePath& file, int longestSide = 1000) {
    Result<Image> image = _loader.load(file, longestSide);
    EXPECT_TRUE(image.ok()) << (image.ok() ? "" : image.error().message);
    return image.ok() ? *image : Image{};
  }

  /// Why a file is refused: one line without an end, and not empty.
  std::string reason(const FilePath& file) {
    const Result<Image> image = _loader.load(file, 1000);
    EXPECT_FALSE(image.ok());
    if (image.ok()) return {};
    EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
    return image.error().message;
  }

  VipsImageLoader _loader;
  TemporaryFolder _folder;
};

struct Format {
  std::string suffix;
  std::string options;
  int tolerance;
};

class EveryFormat : public VipsImageLoaderTest, public testing::WithParamInterface<Format> {};

/// The check sum of a PNG chunk.
std::uint32_t crc(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ (sum & 1U ? 0xEDB88320U : 0U);
  }
  return ~sum;
}

std::string bigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFFU);
  return bytes;
}

std::string pngChunk(const std::string& typeAndData) {
  return bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData +
         bigEndian(crc(typeAndData));
}

/// A grey picture of that size, of which there is no more than the header.
std::string pngHeader(std::uint32_t width, std::uint32_t height, char bitDepth, char interlaced) {
  const std::string format{bitDepth, '\0', '\0', '\0', interlaced};
  return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR" + bigEndian(width) + bigEndian(height) + format) +
         pngChunk("IDAT" + std::string("\x78\x9c", 2));
}

}  // namespace

TEST_P(EveryFormat, isReadWithItsSizeAndColours) {
  const auto& [suffix, options, tolerance] = GetParam();
  const Image image = loadWell(save(_folder, paintQuarters(), "picture" + suffix, options));
  EXPECT_EQ(image.size, (Size{48, 32}));
  ASSERT_TRUE(image.isValid());
  EXPECT_EQ(image.pixels->size, (PixelSize{48, 32}));
  EXPECT_TRUE(image.pixels->opaque);
  EXPECT_EQ(image.pixels->bytes.size(), 48U * 32U * 4U);
  EXPECT_LE(differenceFromQuarters(*image.pixels), tolerance);
}

TEST_P(EveryFormat, isReadSmallerAndKeepsItsOwnSize) {
  const auto& [suffix, options, tolerance] = GetParam();
  const Image image =
      loadWell(save(_folder, paintQuarters(96, 64), "picture" + suffix, options), 24);
  EXPECT_EQ(image.size, (Size{96, 64}));
  ASSERT_TRUE(image.isValid());
  EXPECT_EQ(image.pixels->size, (PixelSize{24, 16}));
  EXPECT_LE(differenceFromQuarters(*image.pixels), tolerance);
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
    const Result<Image> image = _loader.load(_folder.write("wrong", wrong), 64);
    if (image.ok()) {
      EXPECT_TRUE(image->isValid());
    } else {
      EXPECT_FALSE(image.error().message.empty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    VipsImageLoader, EveryFormat,
    testing::Values(Format{".jpg", "[Q=95]", 6}, Format{".png", "", 0},
                    Format{".webp", "[Q=95]", 8}, Format{".tif", "[compression=deflate]", 0},
                    Format{".gif", "", 2}, Format{".heic", "[Q=90,effort=0]", 8},
                    Format{".avif", "[Q=90,effort=0]", 8}, Format{".jxl", "[Q=95,effort=3]", 8}),
    [](const testing::TestParamInfo<Format>& format) { return format.param.suffix.substr(1); });

class EveryOrientation : public VipsImageLoaderTest, public testing::WithParamInterface<int> {};

TEST_P(EveryOrientation, standsUprightAtFullAndReducedSize) {
  const int orientation = GetParam();
  for (const char* name : {"stored.jpg", "stored.tif", "stored.webp"}) {
    const FilePath file =
        save(_folder, storeTurned(paintQuarters(96, 64), orientation), name, "[Q=95]");
    for (const int longestSide : {1000, 24}) {
      const Image image = loadWell(file, longestSide);
      EXPECT_EQ(image.size, (Size{96, 64})) << name;
      ASSERT_TRUE(image.isValid());
      EXPECT_LE(differenceFromQuarters(*image.pixels), 8) << name << " at " << longestSide;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(VipsImageLoader, EveryOrientation, testing::Range(1, 9));

TEST_F(VipsImageLoaderTest, turnsAnHeicByItsOwnRotationAlone) {
  // The container's rotation (none here) counts; an EXIF orientation beside it is a leftover.
  const VipsPointer upright = paintQuarters(96, 64);
  VipsImage* copy = nullptr;
  ASSERT_EQ(vips_copy(upright.get(), &copy, nullptr), 0);
  const VipsPointer labelled(copy);
  vips_image_set_int(labelled.get(), VIPS_META_ORIENTATION, 6);
  for (const char* name : {"a.heic", "a.avif"}) {
    const Image image = loadWell(save(_folder, labelled, name, "[Q=90,effort=0]"));
    EXPECT_EQ(image.size, (Size{96, 64}));
    ASSERT_TRUE(image.isValid());
    EXPECT_LE(differenceFromQuarters(*image.pixels), 8) << name;
  }
}

TEST_F(VipsImageLoaderTest, neverEnlarges) {
  const Image image = loadWell(save(_folder, paintQuarters(), "a.png"), 4000);
  EXPECT_EQ(image.pixels->size, (PixelSize{48, 32}));
}

TEST_F(VipsImageLoaderTest, boundsTheLongerSideOfATallPicture) {
  const Image image = loadWell(save(_folder, paintQuarters(32, 96), "a.png"), 48);
  EXPECT_EQ(image.pixels->size, (PixelSize{16, 48}));
}

TEST_F(VipsImageLoaderTest, keepsAPixelOfTheThinnestPicture) {
  const Image image = loadWell(save(_folder, paintQuarters(2000, 2), "a.png"), 20);
  EXPECT_EQ(image.pixels->size, (PixelSize{20, 1}));
}

TEST_F(VipsImageLoaderTest, readsAtLeastOnePixelWhateverSizeIsAsked) {
  const FilePath file = save(_folder, paintQuarters(), "a.png");
  for (const int longestSide : {1, 0, -5}) {
    EXPECT_EQ(loadWell(file, longestSide).pixels->size, (PixelSize{1, 1}));
  }
}

TEST_F(VipsImageLoaderTest, shrinksALargeJpegInTheDecoderWithoutChangingItsColours) {
  const FilePath file = save(_folder, paintQuarters(800, 600), "a.jpg", "[Q=95]");
  for (const int longestSide : {390, 190, 90, 45}) {  // decoded at 1, 1/2, 1/4 and 1/8
    const Image image = loadWell(file, longestSide);
    EXPECT_EQ(image.size, (Size{800, 600}));
    EXPECT_EQ(image.pixels->size.width, longestSide);
    EXPECT_LE(differenceFromQuarters(*image.pixels), 4);
  }
}

TEST_F(VipsImageLoaderTest, premultipliesAlpha) {
  const Image image = loadWell(save(_folder, paintPlain(8, 8, {200, 100, 50}, 128), "a.png"));
  EXPECT_FALSE(image.pixels->opaque);
  EXPECT_EQ(alphaAt(*image.pixels, 0.5, 0.5), 128);
  EXPECT_LE(difference(colorAt(*image.pixels, 0.5, 0.5), {100, 50, 25}), 1);
}

TEST_F(VipsImageLoaderTest, keepsAlphaInEveryFormatThatHasIt) {
  for (const char* name : {"a.png", "a.webp", "a.tif", "a.jxl", "a.avif"}) {
    const Image image = loadWell(save(_folder, paintPlain(64, 64, {200, 100, 50}, 64), name), 16);
    EXPECT_FALSE(image.pixels->opaque) << name;
    EXPECT_NEAR(alphaAt(*image.pixels, 0.5, 0.5), 64, 3) << name;
    EXPECT_LE(difference(colorAt(*image.pixels, 0.5, 0.5), {50, 25, 13}), 5) << name;
  }
}

TEST_F(VipsImageLoaderTest, seesThatAnAlphaChannelHidesNothing) {
  const Image image = loadWell(save(_folder, paintPlain(8, 8, {200, 100, 50}, 255), "a.png"));
  EXPECT_TRUE(image.pixels->opaque);
  EXPECT_EQ(colorAt(*image.pixels, 0.5, 0.5), (Rgb{200, 100, 50}));
}

TEST_F(VipsImageLoaderTest, readsGreyPictures) {
  VipsImage* grey = nullptr;
  ASSERT_EQ(vips_colourspace(paintQuarters().get(), &grey, VIPS_INTERPRETATION_B_W, nullptr), 0);
  const VipsPointer picture(grey);
  for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
    const Image image = loadWell(save(_folder, picture, name));
    EXPECT_LE(difference(colorAt(*image.pixels, 0.8, 0.8), kWhite), 3) << name;
    const Rgb dark = colorAt(*image.pixels, 0.2, 0.8);
    EXPECT_TRUE(dark[0] == dark[1] && dark[1] == dark[2] && dark[0] < 120) << name;
  }
}

TEST_F(VipsImageLoaderTest, readsSixteenBitPictures) {
  VipsImage* deep = nullptr;
  ASSERT_EQ(vips_colourspace(paintQuarters().get(), &deep, VIPS_INTERPRETATION_RGB16, nullptr), 0);
  const VipsPointer picture(deep);
  for (const char* name : {"a.png", "a.tif"}) {
    EXPECT_LE(differenceFromQuarters(*loadWell(save(_folder, picture, name)).pixels), 1) << name;
  }
}

TEST_F(VipsImageLoaderTest, readsPicturesOfFewColours) {
  const FilePath file = save(_folder, paintQuarters(), "a.png", "[palette,bitdepth=2]");
  EXPECT_LE(differenceFromQuarters(*loadWell(file).pixels), 4);
}

TEST_F(VipsImageLoaderTest, readsPicturesStoredInSeveralPasses) {
  for (const char* name : {"a.jpg", "a.png"}) {
    const FilePath file = save(_folder, paintQuarters(), name, "[interlace]");
    EXPECT_LE(differenceFromQuarters(*loadWell(file).pixels), 8) << name;
  }
}

TEST_F(VipsImageLoaderTest, convertsFromThePicturesOwnProfile) {
  VipsImage* wide = nullptr;
  ASSERT_EQ(
      vips_icc_transform(paintQuarters().get(), &wide, "p3", "input_profile", "srgb", nullptr), 0);
  const VipsPointer picture(wide);
  for (const char* name : {"a.jpg", "a.png", "a.webp", "a.tif", "a.heic", "a.avif", "a.jxl"}) {
    const FilePath file = save(_folder, picture, name, "[Q=95]");
    EXPECT_LE(differenceFromQuarters(*loadWell(file).pixels), 9) << name;
  }
  // Unconverted, the same numbers are other colours.
  const FilePath stripped = save(_folder, picture, "b.png", "[strip]");
  EXPECT_GE(difference(colorAt(*loadWell(stripped).pixels, 0.2, 0.2), kRed), 10);
}

TEST_F(VipsImageLoaderTest, leavesColoursThatAreInSrgbAlone) {
  VipsImage* labelled = nullptr;
  ASSERT_EQ(vips_icc_transform(paintQuarters().get(), &labelled, "srgb", "input_profile", "srgb",
                               nullptr),
            0);
  const VipsPointer picture(labelled);
  EXPECT_LE(differenceFromQuarters(*loadWell(save(_folder, picture, "a.png")).pixels), 1);
}

TEST_F(VipsImageLoaderTest, convertsFromCmyk) {
  VipsImage* printed = nullptr;
  ASSERT_EQ(
      vips_icc_transform(paintQuarters().get(), &printed, "cmyk", "input_profile", "srgb", nullptr),
      0);
  const VipsPointer picture(printed);
  for (const char* options : {"", "[strip]"}) {  // with the profile, and as most are: without
    for (const char* name : {"a.jpg", "a.tif"}) {
      const Image image = loadWell(save(_folder, picture, name, options));
      EXPECT_TRUE(image.pixels->opaque);
      EXPECT_LE(differenceFromQuarters(*image.pixels), 40) << name << options;
    }
  }
}

TEST_F(VipsImageLoaderTest, ignoresABrokenProfile) {
  VipsImage* copy = nullptr;
  ASSERT_EQ(vips_copy(paintQuarters().get(), &copy, nullptr), 0);
  const VipsPointer picture(copy);
  const std::string garbage(400, 'x');
  vips_image_set_blob_copy(picture.get(), VIPS_META_ICC_NAME, garbage.data(), garbage.size());
  for (const char* name : {"a.jpg", "a.webp", "a.tif"}) {
    const Image image = loadWell(save(_folder, picture, name, "[Q=95]"));
    EXPECT_LE(differenceFromQuarters(*image.pixels), 8) << name;
  }
}

TEST_F(VipsImageLoaderTest, ignoresTheProfileOfAnotherKindOfColours) {
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
  const Image image = loadWell(save(_folder, picture, "a.tif"));
  EXPECT_LE(differenceFromQuarters(*image.pixels), 8);
}

TEST_F(VipsImageLoaderTest, showsTheFirstFrameOfAnAnimation) {
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
    const Image image = loadWell(save(_folder, animation, name, ""));
    EXPECT_EQ(image.size, (Size{48, 32})) << name;
    EXPECT_LE(differenceFromQuarters(*image.pixels), 30) << name;
  }
}

TEST_F(VipsImageLoaderTest, knowsAPictureByItsContentsNotByItsName) {
  const std::string png = encoded(paintQuarters(), ".png");
  EXPECT_EQ(differenceFromQuarters(*loadWell(_folder.write("a.jpg", png)).pixels), 0);
  EXPECT_EQ(differenceFromQuarters(*loadWell(_folder.write("no suffix", png)).pixels), 0);
}

TEST_F(VipsImageLoaderTest, readsFilesOfAnyName) {
  const std::string png = encoded(paintQuarters(), ".png");
  for (const char* name :
       {"caf\xe9.png", "two\nlines.png", "[page=3].png", "a[b=c]", "-", "%s%n"}) {
    EXPECT_EQ(differenceFromQuarters(*loadWell(_folder.write(name, png)).pixels), 0) << name;
  }
}

TEST_F(VipsImageLoaderTest, refusesWhatIsNoPicture) {
  EXPECT_EQ(reason(_folder.write("zero.jpg")), "it is empty");
  EXPECT_EQ(reason(_folder.write("text.jpg", "Dear Sir or Madam,\n")),
            "it is not a picture of a known format");
  EXPECT_EQ(reason(_folder.mkdir("folder.jpg")), "it is not a file");
  EXPECT_EQ(reason(_folder.path() / "missing.jpg"),
            "it cannot be opened: No such file or directory");
}

TEST_F(VipsImageLoaderTest, neverWaitsForANamedPipe) {
  const FilePath pipe = _folder.path() / "pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(reason(pipe), "it is not a file");
}

TEST_F(VipsImageLoaderTest, refusesADevice) {
  EXPECT_EQ(reason(FilePath("/dev/zero")), "it is not a file");
}

TEST_F(VipsImageLoaderTest, keepsTheReadersOfOtherFormatsBlocked) {
  EXPECT_EQ(reason(_folder.write("a.ppm", "P6 1 1 255\nabc")),
            "it is not a picture of a known format");
  EXPECT_EQ(reason(_folder.write("a.svg",
                                 "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" "
                                 "height=\"9\"><rect width=\"9\" height=\"9\"/></svg>")),
            "it is not a picture of a known format");
}

TEST_F(VipsImageLoaderTest, refusesAnEnormousPictureByItsHeader) {
  EXPECT_EQ(reason(_folder.write("a.png", pngHeader(40'000, 40'000, 1, 0))),
            "it is 40000 × 40000 pixels, and no more than 500 megapixels of its kind are read");
}

TEST_F(VipsImageLoaderTest, allowsFewerPixelsWhereThePictureIsHeldWhole) {
  EXPECT_EQ(reason(_folder.write("a.png", pngHeader(20'000, 20'000, 8, 1))),
            "it is 20000 × 20000 pixels, and no more than 375 megapixels of its kind are read");
  // Row by row the same size is within the limits; there it is the missing rows that are refused.
  EXPECT_THAT(reason(_folder.write("b.png", pngHeader(20'000, 20'000, 8, 0))),
              testing::StartsWith("it is damaged"));
}

TEST_F(VipsImageLoaderTest, loadsOnSeveralThreadsAtOnce) {
  const FilePath good = save(_folder, paintQuarters(200, 100), "a.jpg", "[Q=95]");
  const FilePath bad = _folder.write("bad.jpg", "no picture");
  std::vector<int> worst(4, 1000);
  {
    std::vector<std::jthread> threads;
    for (int& result : worst) {
      threads.emplace_back([&] {
        for (int i = 0; i < 4; ++i) {
          const Result<Image> image = _loader.load(good, 50);
          result = image.ok() ? differenceFromQuarters(*image->pixels) : 1000;
          if (_loader.load(bad, 50).ok()) result = 1000;
        }
      });
    }
  }
  for (const int result : worst) EXPECT_LE(result, 8);
}

}  // namespace pelmora::platform
