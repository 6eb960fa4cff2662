#pragma once

#include "shared/Geometry.h"
#include "shared/Result.h"

#include <cstdint>
#include <string>

namespace pelmora::decoder {

/// What a BMP file says before its rows.
struct BmpHeader {
  PixelSize size;
  bool hasAlpha = false;  // a mask for it, or runs, which may leave pixels out
  /// The headers, the masks and the colour table, made to say that the rows follow at once.
  std::string begin;
  // Where the file has its rows, and all that comes after them. In bytes.
  std::int64_t rowsOffset = 0;
  std::int64_t rowsBytes = 0;
};

/// Reads a bounded part of the file that `descriptor` is open on, leaves its offset alone, and
/// holds what it says against the limits and the file's length. Thread: any. Errors: limits
/// (`PictureLimits.h`), kinds that are not read, damage, a file that cannot hold all of its rows.
[[nodiscard]] Result<BmpHeader> readBmpHeader(int descriptor);

}  // namespace pelmora::decoder
