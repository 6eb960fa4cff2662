#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pelmora::decoder {

/// A JPEG to be painted in a test.
struct JpegPaint {
  int width = 64;
  int height = 48;
  int channels = 3;  // 1 grey, 3 RGB, 4 inks
  int quality = 95;
  int acrossPerChroma = 2;  // sampling: pixels of brightness for one of colour
  int downPerChroma = 2;
  bool isProgressive = false;
  bool isArithmetic = false;
  int repeatedScans = 0;  // passes that add nothing, after those of a progressive one
  int restartInterval = 0;
  std::string exif = {};                  // an APP1 segment
  std::vector<std::string> profile = {};  // pieces of an ICC profile, in APP2 segments
};

/// The picture in it: smooth, with a different course in each channel.
[[nodiscard]] std::uint8_t paintedValue(const JpegPaint& paint, int x, int y, int channel);
[[nodiscard]] std::string paintedJpeg(const JpegPaint& paint);
/// EXIF data with an orientation and nothing else.
[[nodiscard]] std::string exifOf(int orientation);

}  // namespace pelmora::decoder
