#pragma once

#include "decoder/VideoColors.h"

namespace pelmora::decoder {

/// What the chunks before the pixels of a PNG file say, and libvips passes over.
struct PngHeader {
  VideoColors colors;   // of 'cICP'
  int orientation = 1;  // of 'eXIf', 1 to 8
};

/// Reads a bounded part of the file that `descriptor` is open on and leaves its offset alone.
/// Thread: any. Errors: a file that is damaged, or says nothing, has the defaults.
[[nodiscard]] PngHeader readPngHeader(int descriptor);

}  // namespace pelmora::decoder
