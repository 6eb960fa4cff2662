#pragma once

#include "platform/Image.h"

#include <vector>

namespace pelmora::bench {

/// A picture as exact as it can be made: three channels of doubles a pixel, 0 to 255, sRGB.
struct ExactPicture {
  PixelSize size;
  std::vector<double> values;
};

/// Decodes a file in full, upright, through its profile to sRGB, and makes it smaller with the
/// Lanczos filter of three lobes, stretched to the reduction, its edges clamped, without rounding.
/// The reductions of several sizes share one decoding. Thread: any. Errors: they end the program.
[[nodiscard]] std::vector<ExactPicture> exactPictures(const FilePath& file, bool hasProfile,
                                                      const std::vector<PixelSize>& sizes);

/// How near `pixels` are to it: the peak signal-to-noise ratio in dB over all channels; 0 when the
/// sizes differ.
[[nodiscard]] double signalToNoise(const ExactPicture& exact, const platform::Pixels& pixels);

}  // namespace pelmora::bench
