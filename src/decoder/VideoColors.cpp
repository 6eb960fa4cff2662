#include "decoder/VideoColors.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace pelmora::decoder {

namespace {

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct CurveDeleter {
  void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};

// Code points of ITU-T H.273, tables 2 and 3.
constexpr int kUnspecified = 2;
constexpr int kLinear = 8;
constexpr int kSrgb = 13;
constexpr int kPq = 16;
constexpr int kHlg = 18;
constexpr int kBt709 = 1;
constexpr int kBt2020 = 9;

struct Primaries {
  int code;
  const char* name;
  cmsCIExyYTRIPLE colors;
  cmsCIExyY white;
};

constexpr cmsCIExyY kD65{0.3127, 0.3290, 1.0};
constexpr cmsCIExyY kDciWhite{0.314, 0.351, 1.0};
constexpr cmsCIExyYTRIPLE kP3{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
constexpr cmsCIExyYTRIPLE kSmpteC{{0.630, 0.340, 1}, {0.310, 0.595, 1}, {0.155, 0.070, 1}};

constexpr std::array kPrimaries{
    Primaries{1, "BT.709", {{0.640, 0.330, 1}, {0.300, 0.600, 1}, {0.150, 0.060, 1}}, kD65},
    Primaries{5, "BT.601", {{0.640, 0.330, 1}, {0.290, 0.600, 1}, {0.150, 0.060, 1}}, kD65},
    Primaries{6, "SMPTE 170M", kSmpteC, kD65},
    Primaries{7, "SMPTE 240M", kSmpteC, kD65},
    Primaries{9, "BT.2020", {{0.708, 0.292, 1}, {0.170, 0.797, 1}, {0.131, 0.046, 1}}, kD65},
    Primaries{11, "DCI-P3", kP3, kDciWhite},
    Primaries{12, "Display P3", kP3, kD65},
};

/// Light of a display in cd/m² for a signal from 0 to 1: ITU-R BT.2100, table 4.
double pqLight(double signal) {
  constexpr double m1 = 2610.0 / 16384;
  constexpr double m2 = 2523.0 / 4096 * 128;
  constexpr double c1 = 3424.0 / 4096;
  constexpr double c2 = 2413.0 / 4096 * 32;
  constexpr double c3 = 2392.0 / 4096 * 32;
  const double power = std::pow(signal, 1 / m2);
  return 10'000 * std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1 / m1);
}

/// The same for HLG on a display of 1000 cd/m²: BT.2100, table 5. Its gamma is that of the
/// luminance; here each channel has it, which leaves greys as they are and colours a little fuller.
double hlgLight(double signal) {
  constexpr double a = 0.17883277;
  constexpr double b = 1 - 4 * a;
  const double c = 0.5 - a * std::log(4 * a);
  const double scene = signal <= 0.5 ? signal * signal / 3 : (std::exp((signal - c) / a) + b) / 12;
  return 1000 * std::pow(scene, 1.2);
}

double srgbLight(double signal) {
  return signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4);
}

/// Light in cd/m² on a display that ends at its reference white, 0 to 1. Below the knee it stays as
/// it is; above, a shoulder reaches 1 at the brightest that is commonly mastered. The shape of the
/// whole is that of ITU-R BT.2390's conversion (straight, then a shoulder that begins with the same
/// slope); the shoulder is E. Reinhard's ("Photographic Tone Reproduction", 2002, equation 4).
double compressed(double light) {
  constexpr double referenceWhite = 203;  // ITU-R BT.2408
  constexpr double brightest = 1000 / referenceWhite;
  constexpr double knee = 0.6;  // sRGB 0.8; reference white comes out as sRGB 0.91
  const double value = std::min(light / referenceWhite, brightest);
  if (value <= knee) return value;
  const double x = (value - knee) / (1 - knee);
  const double top = (brightest - knee) / (1 - knee);
  return knee + (1 - knee) * x * (1 + x / (top * top)) / (1 + x);
}

double lightOf(int transfer, double signal) {
  switch (transfer) {
    case 4:
      return std::pow(signal, 2.2);
    case 5:
      return std::pow(signal, 2.8);
    case kLinear:
      return signal;
    case kPq:
      return compressed(pqLight(signal));
    case kHlg:
      return compressed(hlgLight(signal));
    default:
      return srgbLight(signal);
  }
}

/// The transfer that is meant; nothing for one that is not known.
std::optional<int> knownTransfer(int transfer) {
  switch (transfer) {
    case 1:
    case kUnspecified:
    case 6:
    case kSrgb:
    case 14:
    case 15:
      return kSrgb;  // what BT.709 encodes is meant for displays about like sRGB's
    case 4:
    case 5:
    case kLinear:
    case kPq:
    case kHlg:
      return transfer;
    default:
      return std::nullopt;
  }
}

const Primaries* knownPrimaries(int code, int transfer) {
  if (code == kUnspecified) code = transfer == kPq || transfer == kHlg ? kBt2020 : kBt709;
  const auto* const found = std::find_if(kPrimaries.begin(), kPrimaries.end(),
                                         [&](const Primaries& each) { return each.code == code; });
  return found == kPrimaries.end() ? nullptr : found;
}

std::string nameOf(const Primaries& primaries, int transfer) {
  const std::string name = primaries.name;
  switch (transfer) {
    case 4:
      return name + " gamma 2.2";
    case 5:
      return name + " gamma 2.8";
    case kLinear:
      return name + " linear";
    case kPq:
      return name + " PQ";
    case kHlg:
      return name + " HLG";
    default:
      return name;
  }
}

void writeName(cmsHPROFILE profile, const std::string& name) {
  cmsMLU* text = cmsMLUalloc(nullptr, 1);
  if (!text) return;
  if (cmsMLUsetASCII(text, "en", "US", name.c_str())) {
    cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
  }
  cmsMLUfree(text);
}

std::string bytesOf(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  if (!cmsSaveProfileToMem(profile, nullptr, &size)) return {};
  std::string bytes(size, '\0');
  if (!cmsSaveProfileToMem(profile, bytes.data(), &size)) return {};
  // The hour at which it was made would make each of them another profile.
  constexpr std::size_t dateOffset = 24;
  constexpr char date[12] = {0x07, static_cast<char>(0xE8), 0, 1, 0, 1};
  if (bytes.size() >= dateOffset + sizeof date) std::copy_n(date, sizeof date, &bytes[dateOffset]);
  return bytes;
}

std::uint32_t number(const std::string& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  }
  return value;
}

}  // namespace

std::string profileOf(const VideoColors& colors) {
  const std::optional<int> transfer = knownTransfer(colors.transfer);
  if (!transfer) return {};
  const Primaries* primaries = knownPrimaries(colors.primaries, *transfer);
  if (!primaries || (primaries->code == kBt709 && *transfer == kSrgb)) return {};
  std::vector<std::uint16_t> table(4096);
  for (std::size_t i = 0; i < table.size(); ++i) {
    const double signal = static_cast<double>(i) / static_cast<double>(table.size() - 1);
    table[i] = static_cast<std::uint16_t>(std::lround(65535 * lightOf(*transfer, signal)));
  }
  const std::unique_ptr<cmsToneCurve, CurveDeleter> curve(cmsBuildTabulatedToneCurve16(
      nullptr, static_cast<cmsUInt32Number>(table.size()), table.data()));
  if (!curve) return {};
  cmsToneCurve* const curves[3] = {curve.get(), curve.get(), curve.get()};
  const std::unique_ptr<void, ProfileCloser> profile(
      cmsCreateRGBProfile(&primaries->white, &primaries->colors, curves));
  if (!profile) return {};
  writeName(profile.get(), nameOf(*primaries, *transfer));
  return bytesOf(profile.get());
}

VideoColors videoColorsOf(const std::string& profile) {
  constexpr std::size_t headerSize = 128;
  constexpr std::size_t entrySize = 12;
  constexpr std::uint32_t cicp = 0x63696370;  // both the tag and its type
  if (profile.size() < headerSize + 4) return {};
  const std::size_t count = std::min<std::size_t>(number(profile, headerSize),
                                                  (profile.size() - headerSize - 4) / entrySize);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t entry = headerSize + 4 + i * entrySize;
    if (number(profile, entry) != cicp) continue;
    const std::size_t offset = number(profile, entry + 4);
    if (offset > profile.size() || profile.size() - offset < 12) return {};
    if (number(profile, offset) != cicp) return {};
    return {.primaries = static_cast<unsigned char>(profile[offset + 8]),
            .transfer = static_cast<unsigned char>(profile[offset + 9])};
  }
  return {};
}

}  // namespace pelmora::decoder
