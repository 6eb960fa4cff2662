#pragma once

#include "shared/FilePath.h"

#include <string>
#include <vector>

namespace pelmora::bench {

/// A file to decode.
struct DecodePicture {
  std::string name;  // as in the figures: "jpeg.24mp.p3"
  FilePath file;
  bool isJpeg = false;
  bool isBaseline = false;
  bool hasProfile = false;  // that is not sRGB
  bool isForQt = false;     // whether Qt is compared: not with all, to save time
};

/// Makes the files in `folder`: JPEG of 12, 24 and 48 megapixels, baseline and progressive, with
/// and without a Display P3 profile; one of 24 megapixels in each other format; the corpus's HEIC
/// where there is one. Says on standard output what it makes and what it leaves out.
[[nodiscard]] std::vector<DecodePicture> makeDecodePictures(const FilePath& folder);

/// A JPEG of 640 × 480 pixels, for the time of the first picture.
[[nodiscard]] FilePath makeSmallJpeg(const FilePath& folder);

}  // namespace pelmora::bench
