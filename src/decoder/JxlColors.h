#pragma once

#include "decoder/VideoColors.h"

namespace pelmora::decoder {

/// What the encoded colour profile of a JPEG XL file says, which libvips passes over.
/// Reads a bounded part of the file that `descriptor` is open on and leaves its offset alone.
/// Thread: any. Errors: a file that is damaged, or says nothing, has colours unspecified.
[[nodiscard]] VideoColors jxlColors(int descriptor);

}  // namespace pelmora::decoder
