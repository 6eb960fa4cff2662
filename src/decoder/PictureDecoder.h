#pragma once

#include "decoder/ColorConversion.h"
#include "decoder/Raster.h"

namespace pelmora::decoder {

/// A decoded picture, small and in sRGB; not yet turned upright (`writeUpright` does).
struct DecodedPicture {
  PictureFacts facts;
  Raster raster;
};

/// Decodes pictures of every format: rows from `openJpeg`, `openBmp` or `openWithVips`, made
/// smaller by `Resampler`, then the colours of the small picture converted by `ColorConversion`.
/// Thread: one. Ownership: none of the descriptor. Errors: one short line for a person, such as "it
/// is damaged (…)"; nothing is thrown. `startVips` comes first, and `startBmp`.
class PictureDecoder {
 public:
  PictureDecoder();

  /// Decodes the file that `descriptor` is open for reading on, at its begin, so that the longer
  /// side is at most `longestSide` pixels.
  [[nodiscard]] Result<DecodedPicture> decode(int descriptor, int longestSide);

 private:
  ColorConversion _colors;
};

}  // namespace pelmora::decoder
