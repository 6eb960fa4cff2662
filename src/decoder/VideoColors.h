#pragma once

#include <string>

namespace pelmora::decoder {

/// How video and its stills name their colours: code points of ITU-T H.273.
struct VideoColors {
  int primaries = 2;  // 1 BT.709, 9 BT.2020, 11 DCI-P3, 12 Display P3; 2 unspecified
  int transfer = 2;   // 13 sRGB, 16 PQ, 18 HLG, 8 linear, 1/6/14/15 BT.709; 2 unspecified

  [[nodiscard]] bool isSrgb() const { return primaries == 1 && transfer == 13; }
  [[nodiscard]] bool isHdr() const { return transfer == 16 || transfer == 18; }
};

/// An ICC profile of RGB pixels with those colours; empty for those that are shown right without
/// one (sRGB, unspecified, unknown). For PQ and HLG its curves map the picture's range into that of
/// an ordinary display: reference white (203 cd/m², ITU-R BT.2408) and below stay as bright as they
/// are meant to be, highlights are compressed instead of clipped.
[[nodiscard]] std::string profileOf(const VideoColors& colors);

/// The colours that an ICC profile names in its 'cicp' tag, as profiles of HDR pictures do; those
/// unspecified without one. Reads nothing outside of `profile`, whatever it holds.
[[nodiscard]] VideoColors videoColorsOf(const std::string& profile);

}  // namespace pelmora::decoder
