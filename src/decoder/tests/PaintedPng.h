#pragma once

#include <cstdint>
#include <string>

namespace pelmora::decoder {

/// A chunk with its length and check sum; its type is the first four bytes.
[[nodiscard]] std::string pngChunk(const std::string& typeAndData);
/// A grey picture of that size, of which there is no more than the header.
[[nodiscard]] std::string pngHeader(std::uint32_t width, std::uint32_t height, char bitDepth,
                                    char interlaced);
/// The PNG file with one more chunk, right after its header.
[[nodiscard]] std::string withPngChunk(std::string png, const std::string& typeAndData);
/// The content of a chunk that names colours as video does.
[[nodiscard]] std::string cicpChunk(int primaries, int transfer);

}  // namespace pelmora::decoder
