#include "Canvas.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <vector>

#ifndef PELMORA_SOURCE_FOLDER
#error "PELMORA_SOURCE_FOLDER names the folder that the sources are in"
#endif

namespace pelmora::bench {

namespace {

constexpr int kBands = 3;
constexpr int kCellWidth = 1500;
constexpr int kCellHeight = 1000;
constexpr const char* kPhotographs[] = {"iphone_p3.heic", "orient_1_portrait.jpg", "photo.jxl",
                                        "gps.jpg", "progressive.jpg"};

/// Where `at` comes to lie when a line of `length` is mirrored at both its ends, again and again.
int mirrored(int at, int length) {
  const int inPair = at % (2 * length);
  return inPair < length ? inPair : 2 * length - 1 - inPair;
}

VipsPointer readPhotograph(const FilePath& file) {
  VipsImage* decoded = vips_image_new_from_file(file.c_str(), nullptr);
  mustWork(decoded ? 0 : 1);
  const VipsPointer stored(decoded);
  VipsImage* upright = nullptr;
  mustWork(vips_autorot(stored.get(), &upright, nullptr));
  const VipsPointer turned(upright);
  VipsImage* shown = nullptr;
  mustWork(vips_colourspace(turned.get(), &shown, VIPS_INTERPRETATION_sRGB, nullptr));
  return inMemory(VipsPointer(shown));
}

std::vector<VipsPointer> readPhotographs() {
  std::vector<VipsPointer> photographs;
  const FilePath corpus = corpusFolder();
  if (corpus.empty()) return photographs;
  for (const char* name : kPhotographs) {
    const FilePath file = corpus / name;
    if (!std::filesystem::exists(file.bytes())) continue;
    VipsPointer photograph = readPhotograph(file);
    if (photograph->Bands == kBands) photographs.push_back(std::move(photograph));
  }
  return photographs;
}

/// A number from 0 to 1 that depends on the place alone.
double noiseAt(std::uint32_t x, std::uint32_t y) {
  std::uint32_t hash = x * 0x9E3779B1U ^ y * 0x85EBCA77U;
  hash = (hash ^ (hash >> 15)) * 0x2C1B3C6DU;
  hash = (hash ^ (hash >> 12)) * 0x297A2D39U;
  return static_cast<double>(hash ^ (hash >> 15)) / 4294967295.0;
}

/// Noise with a value every `step` pixels, and a straight line from each to the next.
double smoothNoise(int x, int y, int step) {
  const auto column = static_cast<std::uint32_t>(x / step);
  const auto row = static_cast<std::uint32_t>(y / step);
  const double right = static_cast<double>(x % step) / step;
  const double down = static_cast<double>(y % step) / step;
  const double upper = noiseAt(column, row) * (1 - right) + noiseAt(column + 1, row) * right;
  const double lower =
      noiseAt(column, row + 1) * (1 - right) + noiseAt(column + 1, row + 1) * right;
  return upper * (1 - down) + lower * down;
}

void paintTexture(std::vector<std::uint8_t>& pixels, int width, int height) {
  std::size_t at = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double shape = 110 * smoothNoise(x, y, 512) + 60 * smoothNoise(x + 999, y, 64) +
                           30 * smoothNoise(x, y + 777, 8) + 10 * smoothNoise(x, y, 1);
      for (int band = 0; band < kBands; ++band) {
        const double tint = 40 * smoothNoise(x + 5000 * band, y, 256);
        pixels[at++] = static_cast<std::uint8_t>(std::min(255.0, shape + tint));
      }
    }
  }
}

void paintMosaic(const std::vector<VipsPointer>& photographs, std::vector<std::uint8_t>& pixels,
                 int width, int height) {
  const int columns = (width + kCellWidth - 1) / kCellWidth;
  std::size_t at = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int cell = y / kCellHeight * columns + x / kCellWidth;
      const auto count = static_cast<int>(photographs.size());
      VipsImage* photograph = photographs[static_cast<std::size_t>(cell % count)].get();
      // Each time that a photograph comes again another part of it shows.
      const int round = cell / count;
      const int column = mirrored(x % kCellWidth + round * kCellWidth, photograph->Xsize);
      const int row = mirrored(y % kCellHeight + round * kCellHeight / 2, photograph->Ysize);
      const auto* from =
          reinterpret_cast<const std::uint8_t*>(VIPS_IMAGE_ADDR(photograph, column, row));
      for (int band = 0; band < kBands; ++band) pixels[at++] = from[band];
    }
  }
}

}  // namespace

FilePath corpusFolder() {
  const char* named = std::getenv("PELMORA_CORPUS");
  const std::string folder = named && *named ? named : PELMORA_SOURCE_FOLDER "/../shared/corpus";
  return std::filesystem::is_directory(folder) ? FilePath(folder) : FilePath();
}

VipsPointer makeCanvas(int width, int height) {
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height) * kBands);
  const std::vector<VipsPointer> photographs = readPhotographs();
  if (photographs.empty()) {
    paintTexture(pixels, width, height);
  } else {
    paintMosaic(photographs, pixels, width, height);
  }
  VipsImage* canvas = vips_image_new_from_memory_copy(pixels.data(), pixels.size(), width, height,
                                                      kBands, VIPS_FORMAT_UCHAR);
  mustWork(canvas ? 0 : 1);
  canvas->Type = VIPS_INTERPRETATION_sRGB;
  return VipsPointer(canvas);
}

}  // namespace pelmora::bench
