#pragma once

#include "platform/SharedBytes.h"
#include "shared/FilePath.h"
#include "shared/Geometry.h"
#include "shared/Result.h"

#include <cstdint>
#include <memory>

namespace pelmora::platform {

/// Decoded pixels, immutable: 8 bits a channel, blue green red alpha in memory, premultiplied,
/// sRGB, upright, rows from the top, each of exactly `4 × width` bytes.
struct Pixels {
  PixelSize size;
  bool opaque = true;
  SharedBytes bytes;
};

/// A picture to show. `size` is the size it is shown at, in points; a loader sets it to the upright
/// picture's own size in pixels, whatever size it was decoded at.
struct Image {
  Size size;
  std::shared_ptr<const Pixels> pixels;

  [[nodiscard]] bool isValid() const {
    return pixels && pixels->size.width > 0 && pixels->size.height > 0;
  }
};

/// Loads pictures. Files are untrusted. Thread: any, several at once.
class ImageLoader {
 public:
  virtual ~ImageLoader() = default;
  /// Loads a file so that its longer side is at most `longestSide` device pixels (never enlarged),
  /// oriented upright and in sRGB. The error tells a person why it cannot be shown.
  [[nodiscard]] virtual Result<Image> load(const FilePath& file, int longestSide) = 0;
  /// False while no file at all can be loaded, as what loads them is not to be had: the last error
  /// then says nothing of its file.
  [[nodiscard]] virtual bool isAtWork() const { return true; }
};

}  // namespace pelmora::platform
