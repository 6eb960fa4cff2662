#pragma once

#include "platform/Image.h"

namespace pelmora::platform {

/// Loads pictures with libvips: JPEG, PNG, WebP, TIFF, GIF (its first frame), HEIC, AVIF and JPEG
/// XL, known by their contents, not by their names. Every other reader of the library is blocked.
/// Colours are converted from the picture's own profile; a broken profile is ignored.
/// Memory: a few rows where the format allows it, else the picture whole within `PictureLimits.h`.
/// A hostile file within the limits can still take long, and a file that shrinks while it is read
/// can end the process: decode in a process that may be killed. Thread: any, several at once.
/// Errors: one short line; nothing is thrown.
class VipsImageLoader : public ImageLoader {
 public:
  /// Starts the library, once in a process.
  VipsImageLoader();

  [[nodiscard]] Result<Image> load(const FilePath& file, int longestSide) override;
};

}  // namespace pelmora::platform
