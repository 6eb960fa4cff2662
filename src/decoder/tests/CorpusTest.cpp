#include "decoder/tests/PaintedPicture.h"
#include "decoder/VipsRows.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <vector>

namespace pelmora::decoder {

namespace {

// Real pictures from cameras, phones and other programs' tests are not shipped: a folder of them is
// named by PELMORA_CORPUS. Without it these tests say what they leave out, and pass.

struct Spot {
  double x;
  double y;
  Rgb color;
};

struct Expected {
  const char* name;
  Size size;
  std::vector<Spot> spots;  // colours of what is seen there, looked at by eye
};

constexpr int kLongestSide = 810;
constexpr int kSpotTolerance = 12;

const std::vector<Expected>& expectedPictures() {
  static const std::vector<Expected> pictures{
      {"orient_1_portrait.jpg", {1200, 1800}, {}},
      {"orient_2_portrait.jpg", {1200, 1800}, {}},
      {"orient_3_portrait.jpg", {1200, 1800}, {}},
      {"orient_4_portrait.jpg", {1200, 1800}, {}},
      {"orient_5_portrait.jpg", {1200, 1800}, {}},
      {"orient_6_portrait.jpg", {1200, 1800}, {}},
      {"orient_7_portrait.jpg", {1200, 1800}, {}},
      {"orient_8_portrait.jpg", {1200, 1800}, {}},
      // Its profile swaps the channels: without it the words name the wrong colours.
      {"rgb_to_gbr_icc.png",
       {1000, 1000},
       {{0.5, 0.04, {255, 0, 0}}, {0.07, 0.75, {0, 255, 0}}, {0.93, 0.75, {0, 0, 255}}}},
      // Display P3: all of this red is the red of sRGB or beyond it.
      {"p3_red.png", {1000, 1000}, {{0.05, 0.05, {255, 0, 0}}, {0.5, 0.5, {255, 0, 0}}}},
      {"cmyk.jpg", {100, 100}, {{0.05, 0.02, {236, 52, 52}}, {0.5, 0.85, {30, 33, 45}}}},
      {"cmyk_strip.tif", {100, 100}, {{0.05, 0.02, {236, 52, 52}}, {0.5, 0.85, {30, 33, 45}}}},
      {"adobergb.jpg", {290, 442}, {}},
      {"anim.gif", {700, 175}, {}},
      {"anim.webp", {200, 200}, {}},
      {"bad_invalid.jpg", {88, 64}, {}},  // its EXIF is broken, the picture is not
      {"gps.jpg", {640, 480}, {}},
      {"iphone_p3.heic", {2566, 3313}, {}},
      {"mpo.mpo", {640, 480}, {}},
      {"p3_gainmap.jpg", {384, 512}, {}},
      {"p3_irot.avif", {3024, 4032}, {}},
      {"photo.jxl", {1024, 631}, {}},
      {"progressive.jpg", {650, 470}, {}},
      {"rgb16.png", {64, 64}, {}},
      {"rgb16.tif", {157, 151}, {}},
  };
  return pictures;
}

class CorpusTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  /// The corpus file of that name; empty, after a line that says so, where it cannot be had.
  static FilePath file(const std::string& name) {
    const char* folder = std::getenv("PELMORA_CORPUS");
    const FilePath path = FilePath(folder ? folder : "") / name;
    if (folder && std::filesystem::exists(path.bytes())) return path;
    std::cout << "left out: " << name << (folder ? " (missing)" : " (PELMORA_CORPUS is not set)")
              << '\n';
    return FilePath();
  }

  PictureDecoder _decoder;
};

/// The mean difference of a channel between two pictures of one size.
double meanDifference(const Pixels& a, const Pixels& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.bytes.size(); ++i) sum += std::abs(a.bytes[i] - b.bytes[i]);
  return sum / static_cast<double>(a.bytes.size());
}

/// The picture in sRGB by libvips alone, at full size first, then made smaller.
VipsPointer convertedThenShrunk(const FilePath& file, const PixelSize& size) {
  const auto step = [](int failed, VipsImage* const& image) {
    if (failed != 0) throw std::runtime_error(vips_error_buffer());
    return VipsPointer(image);
  };
  const VipsPointer full(vips_image_new_from_file(file.c_str(), nullptr));
  if (!full) throw std::runtime_error(vips_error_buffer());
  VipsImage* out = nullptr;
  const VipsPointer upright = step(vips_autorot(full.get(), &out, nullptr), out);
  const VipsPointer converted =
      step(vips_icc_transform(upright.get(), &out, "srgb", "embedded", TRUE, "intent",
                              VIPS_INTENT_RELATIVE, "depth", 8, nullptr),
           out);
  const VipsPointer opaque =
      step(vips_extract_band(converted.get(), &out, 0, "n", 3, nullptr), out);
  const double across = double(size.width) / vips_image_get_width(opaque.get());
  const double down = double(size.height) / vips_image_get_height(opaque.get());
  return step(vips_resize(opaque.get(), &out, across, "vscale", down, "kernel",
                          VIPS_KERNEL_LANCZOS3, nullptr),
              out);
}

/// The mean CIEDE2000 of the shown pixels against an opaque sRGB picture of their size.
double meanColorDifference(const Pixels& shown, const VipsPointer& expected) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i < shown.bytes.size(); i += 4) {
    for (const std::size_t channel : {2U, 1U, 0U}) bytes.push_back(shown.bytes[i + channel]);
  }
  const VipsPointer ours(vips_image_new_from_memory_copy(
      bytes.data(), bytes.size(), shown.size.width, shown.size.height, 3, VIPS_FORMAT_UCHAR));
  ours->Type = VIPS_INTERPRETATION_sRGB;
  VipsImage* difference = nullptr;
  double mean = 1000;
  if (vips_dE00(ours.get(), expected.get(), &difference, nullptr) == 0) {
    vips_avg(difference, &mean, nullptr);
    g_object_unref(difference);
  }
  return mean;
}

long peakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

}  // namespace

TEST_F(CorpusTest, everyPictureHasItsSizeAndItsColours) {
  for (const auto& [name, size, spots] : expectedPictures()) {
    const FilePath path = file(name);
    if (path.empty()) continue;
    const Result<ShownPicture> image = show(_decoder, path, kLongestSide);
    ASSERT_TRUE(image.ok()) << name << ": " << image.error().message;
    EXPECT_EQ(image->size, size) << name;
    const auto [width, height] = image->pixels.size;
    EXPECT_EQ(std::max(width, height),
              std::min<int>(kLongestSide, static_cast<int>(std::max(size.width, size.height))))
        << name;
    EXPECT_NEAR(double(width) / height, size.width / size.height, 0.01) << name;
    for (const auto& [x, y, color] : spots) {
      EXPECT_LE(difference(colorAt(image->pixels, x, y), color), kSpotTolerance)
          << name << " at " << x << ", " << y;
    }
  }
}

TEST_F(CorpusTest, everyOrientationOfOnePictureLooksTheSame) {
  const FilePath first = file("orient_1_portrait.jpg");
  if (first.empty()) return;
  const Result<ShownPicture> upright = show(_decoder, first, kLongestSide);
  ASSERT_TRUE(upright.ok());
  for (int orientation = 2; orientation <= 8; ++orientation) {
    const FilePath path = file("orient_" + std::to_string(orientation) + "_portrait.jpg");
    if (path.empty()) continue;
    const Result<ShownPicture> image = show(_decoder, path, kLongestSide);
    ASSERT_TRUE(image.ok());
    ASSERT_EQ(image->pixels.size, upright->pixels.size);
    // Each carries its own number in the middle, and was compressed anew.
    EXPECT_LE(meanDifference(image->pixels, upright->pixels), 3) << orientation;
  }
}

TEST_F(CorpusTest, profilesAreAppliedAsToTheFullPicture) {
  for (const char* name :
       {"adobergb.jpg", "iphone_p3.heic", "p3_gainmap.jpg", "p3_irot.avif", "p3_red.png",
        "rgb16.png", "rgb_to_gbr_icc.png", "cmyk.jpg", "photo.jxl"}) {
    const FilePath path = file(name);
    if (path.empty()) continue;
    const Result<ShownPicture> image = show(_decoder, path, kLongestSide);
    ASSERT_TRUE(image.ok()) << name;
    const VipsPointer expected = convertedThenShrunk(path, image->pixels.size);
    const double difference = meanColorDifference(image->pixels, expected);
    std::cout << name << ": mean CIEDE2000 " << difference << '\n';
    EXPECT_LE(difference, 1.0) << name;
  }
}

TEST_F(CorpusTest, anAnimationKeepsTheTransparencyOfItsFirstFrame) {
  const FilePath path = file("anim.webp");
  if (path.empty()) return;
  const Result<ShownPicture> image = show(_decoder, path, kLongestSide);
  ASSERT_TRUE(image.ok());
  EXPECT_FALSE(image->pixels.opaque);
  EXPECT_EQ(alphaAt(image->pixels, 0.02, 0.02), 0);
}

TEST_F(CorpusTest, everyBadFileFailsWithOneLine) {
  for (const char* name : {"bad_truncated.jpg", "bad_truncated.png", "text_named.jpg", "zero.jpg",
                           "bomb_40000.png", "bomb.gif"}) {
    const FilePath path = file(name);
    if (path.empty()) continue;
    const Result<ShownPicture> image = show(_decoder, path, kLongestSide);
    ASSERT_FALSE(image.ok()) << name;
    EXPECT_FALSE(image.error().message.empty()) << name;
    EXPECT_EQ(image.error().message.find('\n'), std::string::npos) << name;
  }
}

TEST_F(CorpusTest, everyFileIsDoneWithinTenSecondsAndOneGigabyte) {
  const char* folder = std::getenv("PELMORA_CORPUS");
  if (!folder) {
    std::cout << "left out: time and memory of every file (PELMORA_CORPUS is not set)\n";
    return;
  }
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const auto start = std::chrono::steady_clock::now();
    const Result<ShownPicture> image =
        show(_decoder, FilePath(entry.path().string()), kLongestSide);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 10) << entry.path();
    std::cout << entry.path().filename().string() << ": " << taken.count() << " s, "
              << (image.ok() ? "shown" : image.error().message) << '\n';
  }
  EXPECT_LT(peakMegabytes(), 1000);
}

}  // namespace pelmora::decoder
