#include "inspector/tests/PaintedFile.h"
#include "platform/linux/index/MetadataInspector.h"
#include "platform/PlainText.h"

#include <gtest/gtest.h>
#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace pelmora::inspector {

namespace {

// The inspector program over thousands of damaged files. Each damage follows from a seed, so that a
// finding can be had again: PELMORA_MUTANTS says how many (10000 for a thorough run).

using platform::FileDescriptor;
using platform::MetadataInspector;
using platform::predicate::Constant;

constexpr int kMutantsByDefault = 500;
constexpr std::size_t kAtOnce = 100;
constexpr std::size_t kLargest = 8 << 20;  // of the corpus, as each mutant is a copy

struct Original {
  std::string name;
  Bytes bytes;
};

int numMutants() {
  const char* wanted = std::getenv("PELMORA_MUTANTS");
  return wanted ? std::max(1, std::atoi(wanted)) : kMutantsByDefault;
}

/// The painted files, and those of the corpus.
std::vector<Original> originals() {
  std::vector<Original> all{{"jpeg", painted(Format::jpeg, fillWithEverything)},
                            {"png", painted(Format::png, fillWithEverything)},
                            {"tiff", painted(Format::tiff, fillWithEverything)},
                            {"webp", painted(Format::webp, fillWithEverything)}};
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Maker";
  all.push_back({"heic", paintedHeic(exif)});
  const char* const folder = std::getenv("PELMORA_CORPUS");
  if (!folder) return all;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.file_size() > kLargest) continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    all.push_back({entry.path().filename(), Bytes(std::istreambuf_iterator<char>(stream), {})});
  }
  std::sort(all.begin(), all.end(),
            [](const Original& a, const Original& b) { return a.name < b.name; });
  return all;
}

/// Turns one to eight bits over; half of the time near the begin, where headers are.
Bytes mutated(Bytes bytes, std::mt19937& random) {
  if (bytes.empty()) return bytes;
  const auto below = [&random](std::size_t bound) { return random() % bound; };
  const std::size_t reach =
      below(2) == 0 ? std::min<std::size_t>(bytes.size(), 1024) : bytes.size();
  for (std::size_t flips = 1 + below(8); flips > 0; --flips) {
    bytes[below(reach)] ^= static_cast<std::uint8_t>(1U << below(8));
  }
  return bytes;
}

class DamagedFilesTest : public testing::Test {
 protected:
  ~DamagedFilesTest() override {
    std::cout << tried << " files: " << read << " read, " << ended << " ended the inspector\n";
  }

  void checkReason(const std::string& why) {
    EXPECT_FALSE(why.empty());
    EXPECT_EQ(why.find('\n'), std::string::npos);
    EXPECT_EQ(why.find("wrong answer"), std::string::npos) << why;
    if (!why.starts_with("its inspector") && !why.starts_with("reading it took")) return;
    ++ended;
    std::cout << why << '\n';
  }
  /// Inspects what is waiting: attributes that are in order, or a reason in one line.
  void inspectWaiting() {
    const auto take = [this](std::size_t, const MetadataInspector::Answer& answer) {
      ++tried;
      if (answer) {
        check(*answer);
      } else {
        checkReason(answer.error().message);
      }
      return true;
    };
    EXPECT_TRUE(_inspector.inspect(_waiting, take).ok());
    _waiting.clear();
  }
  void inspect(const Bytes& bytes) {
    _waiting.push_back(fileOf(bytes));
    if (_waiting.size() == kAtOnce) inspectWaiting();
  }

  int tried = 0;
  int read = 0;
  int ended = 0;

 private:
  void check(const platform::metadata::FileMetadata& metadata) {
    ++read;
    for (const auto& [position, values] : metadata.all()) {
      for (const Constant& value : values) {
        const auto* const text = value.get<std::string>();
        EXPECT_TRUE(!text || platform::isPlainText(*text));
      }
    }
  }

  MetadataInspector _inspector{{FilePath(PELMORA_INSPECTOR)}};
  std::vector<FileDescriptor> _waiting;
};

}  // namespace

TEST_F(DamagedFilesTest, cutShortAnywhereCostNoMoreThanThemselves) {
  for (const Original& original : originals()) {
    const std::size_t step = std::max<std::size_t>(1, original.bytes.size() / 400);
    for (std::size_t size = 0; size <= original.bytes.size(); size += step) {
      const auto end = original.bytes.begin() + static_cast<std::ptrdiff_t>(size);
      inspect(Bytes(original.bytes.begin(), end));
    }
  }
  inspectWaiting();
  EXPECT_GT(read, 0);
}

TEST_F(DamagedFilesTest, withBitsTurnedOverCostNoMoreThanThemselves) {
  const std::vector<Original> all = originals();
  const int count = numMutants() / static_cast<int>(all.size()) + 1;
  inspectWaiting();
  for (const Original& original : all) {
    for (int i = 0; i < count; ++i) {
      std::seed_seq seed{i, static_cast<int>(original.bytes.size())};
      std::mt19937 random(seed);
      inspect(mutated(original.bytes, random));
    }
  }
  inspectWaiting();
  EXPECT_GT(read, tried / 4);
  EXPECT_LT(ended, tried / 20);
}

}  // namespace pelmora::inspector
