#pragma once

namespace pelmora::decoder {

/// Whether a file begins as those of the formats do that are read. Asked first, as libvips tries
/// every reader that it has on what it does not know, and some of those read all of a file.
/// `descriptor` stays where it is. Thread: any.
[[nodiscard]] bool hasPictureSignature(int descriptor);

/// Whether it begins as a JPEG does.
[[nodiscard]] bool hasJpegSignature(int descriptor);

}  // namespace pelmora::decoder
