#pragma once

#include <lcms2.h>

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace pelmora::decoder {

/// Converts RGB of 8 bits to sRGB for a profile of the simple kind that cameras, phones and
/// displays have: a curve for each channel, then a matrix. Looks everything up in tables, which
/// takes a fraction of the colour library's time.
class MatrixShaper {
 public:
  /// Null for a profile of another kind, or with numbers out of all bounds.
  static std::unique_ptr<MatrixShaper> make(cmsHPROFILE profile);

  /// `to` may be `from`.
  void convert(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) const;

 private:
  // What one value of one channel adds to red, green and blue, in linear light; the fourth is for
  // adding four at once.
  using Light = std::array<std::int32_t, 4>;
  static constexpr int kLightBits = 14;     // of the index into `_encoded`
  static constexpr int kFractionBits = 10;  // below those

  MatrixShaper();
  bool takeCurve(std::size_t channel, const cmsToneCurve* curve, const std::array<double, 3>& row);

  alignas(16) std::array<std::array<Light, 256>, 3> _light{};
  std::array<std::uint8_t, (1 << kLightBits) + 1> _encoded{};
};

}  // namespace pelmora::decoder
