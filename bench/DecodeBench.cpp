#include "Benches.h"
#include "DecodePictures.h"
#include "DecoderChild.h"
#include "ExactPicture.h"
#include "PlainDecoders.h"
#include "Report.h"
#include "Trees.h"
#include "VipsPointer.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace pelmora::bench {

namespace {

constexpr int kSides[] = {810, 1620};
constexpr int kTargetSide = 810;        // of what a JPEG's target is for
constexpr double kBaselineMost = 1.15;  // of libjpeg-turbo
constexpr double kOtherMost = 1.1;      // of vips_thumbnail
constexpr double kLeastDecibels = 44;
constexpr double kMostMegabytes = 40;
constexpr double kSecondsForAPicture = 4;  // at one size
constexpr int kMostRounds = 7;
constexpr int kLeastRounds = 3;

/// One way of decoding, with its times in milliseconds, round by round.
struct Contestant {
  const char* name;
  std::function<void()> decode;
  std::vector<double> processor = {};
  std::vector<double> wall = {};
};

void measure(Contestant& contestant, const DecoderChild& ours) {
  const double before = ours.processorSeconds();
  const double wall = secondsOf(contestant.decode);
  contestant.wall.push_back(wall * 1e3);
  contestant.processor.push_back((ours.processorSeconds() - before) * 1e3);
}

/// Lets all take turns: a first round that warms up and tells how many more there is time for.
void compete(std::vector<Contestant>& contestants, const DecoderChild& ours) {
  const double round = secondsOf([&] {
    for (Contestant& each : contestants) each.decode();
  });
  const int rounds =
      std::clamp(static_cast<int>(kSecondsForAPicture / round), kLeastRounds, kMostRounds);
  for (int i = 0; i < rounds; ++i) {
    for (Contestant& each : contestants) measure(each, ours);
  }
}

void reportAgainst(const std::string& name, const Contestant& ours, const Contestant& other,
                   std::optional<double> processorMost, std::optional<double> wallMost) {
  report({.name = name + ".cpu",
          .value = median(ours.processor),
          .unit = "ms-cpu",
          .base = other.name,
          .baseValue = median(other.processor),
          .most = processorMost});
  report({.name = name + ".wall",
          .value = median(ours.wall),
          .unit = "ms",
          .base = other.name,
          .baseValue = median(other.wall),
          .most = wallMost});
}

void benchTimes(const DecodePicture& picture, int side, DecoderChild& child) {
  const FilePath& file = picture.file;
  std::vector<Contestant> contestants{{"ours", [&] { child.load(file, side); }}};
  if (picture.isJpeg) {
    contestants.push_back({"libjpeg-turbo", [&] { decodeWithLibjpeg(file, side); }});
  }
  contestants.push_back(
      {"vips_thumbnail", [&] { decodeWithVips(file, side, picture.hasProfile); }});
  if (picture.isForQt && decodeWithQt(file, side)) {
    contestants.push_back({"Qt", [&] { decodeWithQt(file, side); }});
  }
  compete(contestants, child);
  const std::string name = "decode." + picture.name + "." + std::to_string(side);
  const Contestant& ours = contestants.front();
  for (const Contestant& other : contestants) {
    if (&other == &ours) continue;
    std::optional<double> processorMost;
    std::optional<double> wallMost;
    if (picture.isBaseline) {
      if (other.name == std::string("libjpeg-turbo") && side == kTargetSide) {
        processorMost = wallMost = kBaselineMost;
      }
    } else if (other.name == std::string("vips_thumbnail")) {
      processorMost = kOtherMost;
    }
    reportAgainst(name, ours, other, processorMost, wallMost);
  }
}

void benchLikeness(const DecodePicture& picture, DecoderChild& child) {
  std::vector<platform::Image> images;
  std::vector<PixelSize> sizes;
  for (const int side : kSides) {
    images.push_back(child.load(picture.file, side));
    sizes.push_back(images.back().pixels->size);
  }
  const std::vector<ExactPicture> exact = exactPictures(picture.file, picture.hasProfile, sizes);
  for (std::size_t i = 0; i < images.size(); ++i) {
    report({.name = "decode.psnr." + picture.name + "." + std::to_string(kSides[i]),
            .value = signalToNoise(exact[i], *images[i].pixels),
            .unit = "dB",
            .least = kLeastDecibels});
  }
}

void benchMemory(const std::vector<DecodePicture>& pictures) {
  DecoderChild child;
  for (const DecodePicture& picture : pictures) {
    if (!picture.isBaseline) continue;
    for (const int side : kSides) child.load(picture.file, side);
  }
  report({.name = "decode.child-memory.jpeg",
          .value = child.megabytes("VmRSS"),
          .unit = "MB",
          .most = kMostMegabytes});
  report(
      {.name = "decode.child-memory.jpeg-peak", .value = child.megabytes("VmHWM"), .unit = "MB"});
}

void benchFirst(const FilePath& smallJpeg) {
  std::vector<double> starts;
  for (int round = 0; round < kMostRounds; ++round) {
    DecoderChild child;
    starts.push_back(secondsOf([&] { child.load(smallJpeg, kTargetSide); }) * 1e3);
  }
  report({.name = "decode.first-picture.wall", .value = median(starts), .unit = "ms"});
}

}  // namespace

void benchDecode() {
  mustWork(VIPS_INIT("pelmora_bench"));
  const Workplace place;
  const std::vector<DecodePicture> pictures = makeDecodePictures(place.path());
  prepareVips();
  benchFirst(makeSmallJpeg(place.path()));
  benchMemory(pictures);
  DecoderChild child;
  for (const DecodePicture& picture : pictures) {
    for (const int side : kSides) benchTimes(picture, side, child);
    benchLikeness(picture, child);
  }
}

}  // namespace pelmora::bench
