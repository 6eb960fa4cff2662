#pragma once

#include "decoder/VideoColors.h"

namespace pelmora::decoder {

/// What the 'nclx' colour box of the main picture of a HEIC and AVIF file says, which libvips
/// passes over. Reads a bounded part of the file that `descriptor` is open on and leaves its offset
/// alone. Thread: any. Errors: a file that is damaged, or says nothing, has colours unspecified.
[[nodiscard]] VideoColors heifColors(int descriptor);

}  // namespace pelmora::decoder
