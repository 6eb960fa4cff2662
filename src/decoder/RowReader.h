#pragma once

#include "shared/Geometry.h"
#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace pelmora::decoder {

/// What the channels of a pixel stand for, without the alpha that may follow them.
enum class ColorModel { grey, rgb, cmyk };

/// How the pixels of a row lie in memory: interleaved, alpha last and not multiplied in.
struct RowFormat {
  PixelSize size;  // of the picture as it is read: possibly reduced, not turned
  ColorModel model = ColorModel::rgb;
  bool hasAlpha = false;
  int bytesPerChannel = 1;  // 2: 16 bits in the machine's order
  // Of a picture that is read reduced. `Resampler` makes up for what that does to place and
  // sharpness; without, its right and lower edge would move by up to a pixel.
  double reachX = 0;    // the picture's right edge, where it lies inside the last column; else 0
  double reachY = 0;    // the lower one
  int averagedBox = 1;  // each pixel is the plain average of so many stored ones along both sides

  [[nodiscard]] int channels() const {
    return (model == ColorModel::grey ? 1 : model == ColorModel::rgb ? 3 : 4) + (hasAlpha ? 1 : 0);
  }
  [[nodiscard]] std::size_t samplesPerRow() const {
    return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(channels());
  }
  [[nodiscard]] std::size_t bytesPerRow() const {
    return samplesPerRow() * static_cast<std::size_t>(bytesPerChannel);
  }
};

/// What a file says about its picture, and who looks at it wants to know.
struct PictureFacts {
  std::string format;        // "JPEG", "PNG", "WebP", "TIFF", "GIF", "HEIC", "AVIF", "JPEG XL",
                             // "BMP"
  PixelSize storedSize;      // before turning and before any reduction
  int orientation = 1;       // 1 to 8, as EXIF counts; 1 where the decoder has turned it already
  std::string profile = {};  // the bytes of the ICC profile of its pixels; empty: sRGB
};

/// A picture being read, row by row from the top. Made by `openJpeg`, `openBmp` and `openWithVips`,
/// which check its header and its limits before any pixel is read.
/// Thread: one. Ownership: does not own the descriptor it reads from. Errors: as `Status`; after
/// one, no more rows can be had. Nothing is thrown, and no library's text goes to standard error.
class RowReader {
 public:
  virtual ~RowReader() = default;

  [[nodiscard]] virtual const PictureFacts& facts() const = 0;
  [[nodiscard]] virtual const RowFormat& format() const = 0;
  /// Reads the next row into `row`, `format().bytesPerRow()` bytes.
  [[nodiscard]] virtual Status readRow(std::span<std::byte> row) = 0;
  /// After the last row: whether the file ended as it should. A file that is found to be damaged or
  /// cut short only here is refused as if it had been found while reading.
  [[nodiscard]] virtual Status finish() = 0;
};

}  // namespace pelmora::decoder
