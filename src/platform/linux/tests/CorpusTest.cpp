#include "platform/linux/tests/PaintedPicture.h"
#include "platform/linux/VipsImageLoader.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <vector>

namespace pelmora::platform {

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
  /// The corpus file of that name; empty, after a line that says so, where it cannot be had.
  static FilePath file(const std::string& name) {
    const char* folder = std::getenv("PELMORA_CORPUS");
    const FilePath path = FilePath(folder ? folder : "") / name;
    if (folder && std::filesystem::exists(path.bytes())) return path;
    std::cout << "left out: " << name << (folder ? " (missing)" : " (PELMORA_CORPUS is not set)")
              << '\n';
    return FilePath();
  }

  VipsImageLoader _loader;
};

/// The mean difference of a channel between two pictures of one size.
double meanDifference(const Pixels& a, const Pixels& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.bytes.size(); ++i) sum += std::abs(a.bytes[i] - b.bytes[i]);
  return sum / static_cast<double>(a.bytes.size());
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
    const Result<Image> image = _loader.load(path, kLongestSide);
    ASSERT_TRUE(image.ok()) << name << ": " << image.error().message;
    EXPECT_EQ(image->size, size) << name;
    const auto [width, height] = image->pixels->size;
    EXPECT_EQ(std::max(width, height),
              std::min<int>(kLongestSide, static_cast<int>(std::max(size.width, size.height))))
        << name;
    EXPECT_NEAR(double(width) / height, size.width / size.height, 0.01) << name;
    for (const auto& [x, y, color] : spots) {
      EXPECT_LE(difference(colorAt(*image->pixels, x, y), color), kSpotTolerance)
          << name << " at " << x << ", " << y;
    }
  }
}

TEST_F(CorpusTest, everyOrientationOfOnePictureLooksTheSame) {
  const FilePath first = file("orient_1_portrait.jpg");
  if (first.empty()) return;
  const Result<Image> upright = _loader.load(first, kLongestSide);
  ASSERT_TRUE(upright.ok());
  for (int orientation = 2; orientation <= 8; ++orientation) {
    const FilePath path = file("orient_" + std::to_string(orientation) + "_portrait.jpg");
    if (path.empty()) continue;
    const Result<Image> image = _loader.load(path, kLongestSide);
    ASSERT_TRUE(image.ok());
    ASSERT_EQ(image->pixels->size, upright->pixels->size);
    // Each carries its own number in the middle, and was compressed anew.
    EXPECT_LE(meanDifference(*image->pixels, *upright->pixels), 3) << orientation;
  }
}

TEST_F(CorpusTest, anAnimationKeepsTheTransparencyOfItsFirstFrame) {
  const FilePath path = file("anim.webp");
  if (path.empty()) return;
  const Result<Image> image = _loader.load(path, kLongestSide);
  ASSERT_TRUE(image.ok());
  EXPECT_FALSE(image->pixels->opaque);
  EXPECT_EQ(alphaAt(*image->pixels, 0.02, 0.02), 0);
}

TEST_F(CorpusTest, everyBadFileFailsWithOneLine) {
  for (const char* name : {"bad_truncated.jpg", "bad_truncated.png", "text_named.jpg", "zero.jpg",
                           "bomb_40000.png", "bomb.gif"}) {
    const FilePath path = file(name);
    if (path.empty()) continue;
    const Result<Image> image = _loader.load(path, kLongestSide);
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
    const Result<Image> image = _loader.load(FilePath(entry.path().string()), kLongestSide);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 10) << entry.path();
    std::cout << entry.path().filename().string() << ": " << taken.count() << " s, "
              << (image.ok() ? "shown" : image.error().message) << '\n';
  }
  EXPECT_LT(peakMegabytes(), 1000);
}

}  // namespace pelmora::platform
