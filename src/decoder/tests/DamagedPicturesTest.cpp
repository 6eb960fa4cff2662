#include "decoder/tests/PaintedBmp.h"
#include "decoder/tests/PaintedPicture.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/IsolatedImageLoader.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace pelmora::decoder {

namespace {

// The decoder program over thousands of damaged pictures. Each damage follows from a seed, so that
// a finding can be had again: PELMORA_MUTANTS says how many (10000 for a thorough run).

using platform::Image;
using platform::IsolatedImageLoader;
using platform::TemporaryFolder;

constexpr int kLongestSide = 64;
constexpr int kCuts = 200;  // of each format
constexpr int kMutantsByDefault = 500;

struct Original {
  std::string name;
  std::string bytes;
  double megapixels = 0;
};

int numMutants() {
  const char* wanted = std::getenv("PELMORA_MUTANTS");
  return wanted ? std::max(1, std::atoi(wanted)) : kMutantsByDefault;
}

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

std::size_t entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

class DamagedPicturesTest : public testing::Test {
 protected:
  DamagedPicturesTest() {
    for (const auto& [suffix, options] : kFormats) {
      const VipsPointer picture = paintQuarters(96, 64);
      _painted.push_back({"painted" + suffix, encoded(picture, suffix, options), 0.006});
    }
    for (const BmpKind& kind : bmpKinds()) {
      _painted.push_back({"painted " + kind.name + ".bmp", paintedBmp(kind, {96, 64}), 0.006});
    }
  }

  /// The painted pictures, and those of the corpus that can be read.
  std::vector<Original> originals() {
    std::vector<Original> all = _painted;
    const char* folder = std::getenv("PELMORA_CORPUS");
    if (!folder) return all;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const auto picture = _loader.inspect(FilePath(entry.path().string()), kLongestSide);
      if (!picture) continue;
      const auto [width, height] = picture->storedSize;
      all.push_back({entry.path().filename(), contentsOf(entry.path()), 1e-6 * width * height});
    }
    std::sort(all.begin(), all.end(),
              [](const Original& a, const Original& b) { return a.name < b.name; });
    return all;
  }

  /// Loads it: a picture that is whole in itself, or a reason in one line.
  Result<Image> loadBytes(const std::string& bytes) {
    const FilePath file = _folder.write("damaged", bytes);
    Result<Image> image = _loader.load(file, kLongestSide);
    if (image.ok()) {
      EXPECT_TRUE(image->isValid());
      const auto [width, height] = image->pixels->size;
      EXPECT_LE(std::max(width, height), kLongestSide);
      EXPECT_EQ(image->pixels->bytes.size(), 4U * static_cast<unsigned>(width * height));
    } else {
      EXPECT_FALSE(image.error().message.empty());
      EXPECT_EQ(image.error().message.find('\n'), std::string::npos);
    }
    return image;
  }

  struct Format {
    std::string suffix;
    std::string options;
  };
  static inline const std::vector<Format> kFormats{{".jpg", "[Q=90]"},
                                                   {".png", ""},
                                                   {".webp", "[Q=90]"},
                                                   {".tif", "[compression=deflate]"},
                                                   {".gif", ""},
                                                   {".heic", "[Q=80,effort=0]"},
                                                   {".avif", "[Q=80,effort=0]"},
                                                   {".jxl", "[Q=90,effort=3]"}};

  std::vector<Original> _painted;
  TemporaryFolder _folder;
  IsolatedImageLoader _loader{{.program = FilePath(PELMORA_DECODER)}};
};

/// Turns one to eight bits over; half of the time near the begin, where headers are.
std::string mutated(std::string bytes, std::mt19937& random) {
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  const std::size_t reach =
      below(2) == 0 ? std::min<std::size_t>(bytes.size(), 1024) : bytes.size();
  for (std::size_t flips = 1 + below(8); flips > 0; --flips) {
    char& byte = bytes[below(reach)];
    byte = static_cast<char>(byte ^ (1 << below(8)));
  }
  return bytes;
}

}  // namespace

TEST_F(DamagedPicturesTest, cutShortAnywhereAreRefusedOrWhole) {
  std::mt19937 random(1);
  for (const Original& original : _painted) {
    const Result<Image> whole = loadBytes(original.bytes);
    ASSERT_TRUE(whole.ok()) << original.name << ": " << whole.error().message;
    for (int i = 0; i < kCuts; ++i) {
      const std::size_t length = random() % original.bytes.size();
      const Result<Image> cut = loadBytes(original.bytes.substr(0, length));
      if (!cut) continue;
      EXPECT_TRUE(std::equal(cut->pixels->bytes.begin(), cut->pixels->bytes.end(),
                             whole->pixels->bytes.begin(), whole->pixels->bytes.end()))
          << original.name << " is shown in part when cut after " << length << " of "
          << original.bytes.size() << " bytes";
    }
  }
}

TEST_F(DamagedPicturesTest, withBitsTurnedOverCostNoMoreThanTheirOwnLoad) {
  const std::vector<Original> all = originals();
  ASSERT_TRUE(loadBytes(_painted.front().bytes).ok());
  const std::size_t descriptors = entriesOf("/proc/self/fd");
  // Large pictures take long to decode: fewer mutants of those.
  double shares = 0;
  for (const Original& original : all) shares += 1 / (0.5 + original.megapixels);
  int tried = 0;
  int shown = 0;
  int ended = 0;
  for (const Original& original : all) {
    const double share = 1 / (0.5 + original.megapixels) / shares;
    const int count = std::max(1, static_cast<int>(share * numMutants() + 1));
    for (int i = 0; i < count; ++i, ++tried) {
      std::seed_seq seed{i, static_cast<int>(original.bytes.size())};
      std::mt19937 random(seed);
      SCOPED_TRACE(original.name + ", mutant " + std::to_string(i));
      const Result<Image> image = loadBytes(mutated(original.bytes, random));
      if (image.ok()) ++shown;
      if (!image.ok() && image.error().message.starts_with("its decoder")) {
        ++ended;
        std::cout << original.name << ", mutant " << i << ": " << image.error().message << '\n';
      }
    }
  }
  std::cout << tried << " mutants: " << shown << " shown, " << tried - shown
            << " refused, of which " << ended << " ended their decoder\n";
  EXPECT_TRUE(loadBytes(_painted.front().bytes).ok());
  EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
}

}  // namespace pelmora::decoder
