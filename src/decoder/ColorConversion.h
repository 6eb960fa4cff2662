#pragma once

#include "decoder/IccProfile.h"
#include "decoder/Raster.h"

#include <memory>
#include <string>

namespace pelmora::decoder {

/// Converts small pictures to sRGB, 8 bits a channel, red green blue (alpha), alpha not multiplied
/// in. Relative colorimetric, without black point compensation, by lcms2.
/// The profile of the last picture is kept with its transform, as albums come from one camera.
/// A profile that is broken, too large, or of another colour model than the pixels is left unused:
/// grey and RGB are then taken as sRGB, CMYK as the profile given as `cmykFallback`.
/// Thread: one.
class ColorConversion {
 public:
  explicit ColorConversion(std::string cmykFallback = {});
  ~ColorConversion();

  /// `picture` may be premultiplied; the result is not.
  [[nodiscard]] Result<Raster> toSrgb(Raster picture, const std::string& profile);

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::decoder
