#pragma once

#include "shared/FilePath.h"

namespace pelmora::bench {

// What our decoding is compared with: each decodes a file to memory so that the longer side is
// about `longestSide` pixels. Thread: one. Errors: they end the program.

/// libjpeg-turbo at the smallest of its scales (eighths) that is not below the size asked for: the
/// least that a JPEG can cost.
void decodeWithLibjpeg(const FilePath& file, int longestSide);
/// `vips_thumbnail`, to sRGB where the file has a profile. `prepareVips` comes first.
void decodeWithVips(const FilePath& file, int longestSide, bool hasProfile);
/// Qt's reader. False for a format that it does not know here.
bool decodeWithQt(const FilePath& file, int longestSide);

/// From now on libvips keeps nothing between two pictures, uses one thread and gives no warnings.
void prepareVips();

}  // namespace pelmora::bench
