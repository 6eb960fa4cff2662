#pragma once

#include "platform/Image.h"

#include <string>

namespace pelmora::platform {

/// A picture with what its file says about it.
struct InspectedPicture {
  Image image;
  std::string format;    // "JPEG", "HEIC", …
  PixelSize storedSize;  // before turning
  int orientation = 1;   // as EXIF counts, 1 to 8
  std::string profile;   // "sRGB", "Display P3", …
};

}  // namespace pelmora::platform
