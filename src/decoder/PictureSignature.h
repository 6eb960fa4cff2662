#pragma once

namespace pelmora::decoder {

/// Whether a file begins as those of the formats do that libvips reads for us. Asked first, as it
/// tries every reader that it has on what it does not know, and some of those read all of a file.
/// `descriptor` stays where it is. Thread: any.
[[nodiscard]] bool hasPictureSignature(int descriptor);

/// Whether it begins as a JPEG does.
[[nodiscard]] bool hasJpegSignature(int descriptor);

/// Whether it begins as a BMP does.
[[nodiscard]] bool hasBmpSignature(int descriptor);

}  // namespace pelmora::decoder
