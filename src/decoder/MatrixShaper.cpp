#include "decoder/MatrixShaper.h"

#include <algorithm>
#include <cmath>

namespace pelmora::decoder {

namespace {

// Beyond it sums could overflow. Of the profiles in use the widest, ProPhoto, has 2.1.
constexpr double kLargestFactor = 8;

// From the connection space (D50) to the linear light of sRGB: the inverse of the colorants that
// the sRGB profile of the ICC has.
constexpr std::array<std::array<double, 3>, 3> kToLinearSrgb{
    {{3.1341863642, -1.6172089590, -0.4906940640},
     {-0.9787485042, 1.9161300968, 0.0334333992},
     {0.0719639278, -0.2289938735, 1.4057537329}}};

constexpr std::array kCurves{cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
constexpr std::array kColorants{cmsSigRedColorantTag, cmsSigGreenColorantTag,
                                cmsSigBlueColorantTag};

double encoded(double light) {
  return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

std::array<double, 3> linearSrgb(const cmsCIEXYZ& color) {
  std::array<double, 3> linear{};
  for (std::size_t i = 0; i < 3; ++i) {
    const auto& row = kToLinearSrgb[i];
    linear[i] = row[0] * color.X + row[1] * color.Y + row[2] * color.Z;
  }
  return linear;
}

}  // namespace

MatrixShaper::MatrixShaper() {
  constexpr double kWhite = 1 << kLightBits;
  for (std::size_t i = 0; i < _encoded.size(); ++i) {
    _encoded[i] =
        static_cast<std::uint8_t>(std::lround(255 * encoded(static_cast<double>(i) / kWhite)));
  }
}

std::unique_ptr<MatrixShaper> MatrixShaper::make(cmsHPROFILE profile) {
  if (cmsGetColorSpace(profile) != cmsSigRgbData || !cmsIsMatrixShaper(profile) ||
      cmsGetPCS(profile) != cmsSigXYZData) {
    return nullptr;
  }
  // Where there are tables besides, the library goes by them.
  for (const cmsTagSignature table :
       {cmsSigAToB0Tag, cmsSigAToB1Tag, cmsSigDToB0Tag, cmsSigDToB1Tag}) {
    if (cmsIsTag(profile, table)) return nullptr;
  }
  std::unique_ptr<MatrixShaper> shaper(new MatrixShaper);
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const auto* curve = static_cast<cmsToneCurve*>(cmsReadTag(profile, kCurves[channel]));
    const auto* colorant = static_cast<cmsCIEXYZ*>(cmsReadTag(profile, kColorants[channel]));
    if (!curve || !colorant || !shaper->takeCurve(channel, curve, linearSrgb(*colorant))) {
      return nullptr;
    }
  }
  return shaper;
}

bool MatrixShaper::takeCurve(std::size_t channel, const cmsToneCurve* curve,
                             const std::array<double, 3>& row) {
  constexpr double kWhite = 1 << (kLightBits + kFractionBits);
  for (std::size_t value = 0; value < 256; ++value) {
    const double linear = cmsEvalToneCurveFloat(curve, static_cast<float>(value) / 255.0F);
    for (std::size_t i = 0; i < 3; ++i) {
      const double light = linear * row[i];
      if (!(std::abs(light) <= kLargestFactor)) return false;  // not a number, too
      _light[channel][value][i] = static_cast<std::int32_t>(std::lround(light * kWhite));
    }
  }
  return true;
}

void MatrixShaper::convert(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) const {
  constexpr std::int32_t kHalf = 1 << (kFractionBits - 1);
  constexpr std::int32_t kWhite = 1 << kLightBits;
  for (std::size_t at = 0; at + 3 <= from.size(); at += 3) {
    const Light& red = _light[0][from[at]];
    const Light& green = _light[1][from[at + 1]];
    const Light& blue = _light[2][from[at + 2]];
    Light sums;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::int32_t sum = (red[i] + green[i] + blue[i] + kHalf) >> kFractionBits;
      sums[i] = std::clamp<std::int32_t>(sum, 0, kWhite);
    }
    for (std::size_t i = 0; i < 3; ++i) to[at + i] = _encoded[static_cast<std::size_t>(sums[i])];
  }
}

}  // namespace pelmora::decoder
