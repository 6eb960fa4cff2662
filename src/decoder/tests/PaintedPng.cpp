#include "decoder/tests/PaintedPng.h"

#include <string_view>

namespace pelmora::decoder {

namespace {

std::uint32_t crc(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ (sum & 1U ? 0xEDB88320U : 0U);
  }
  return ~sum;
}

std::string bigEndian(std::uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFFU);
  return bytes;
}

}  // namespace

std::string pngChunk(const std::string& typeAndData) {
  return bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData +
         bigEndian(crc(typeAndData));
}

std::string pngHeader(std::uint32_t width, std::uint32_t height, char bitDepth, char interlaced) {
  const std::string format{bitDepth, '\0', '\0', '\0', interlaced};
  return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR" + bigEndian(width) + bigEndian(height) + format) +
         pngChunk("IDAT" + std::string("\x78\x9c", 2));
}

std::string withPngChunk(std::string png, const std::string& typeAndData) {
  constexpr std::size_t headerEnd = 8 + 25;  // the signature, and IHDR with its 13 bytes
  return png.insert(headerEnd, pngChunk(typeAndData));
}

std::string cicpChunk(int primaries, int transfer) {
  return std::string("cICP") + static_cast<char>(primaries) + static_cast<char>(transfer) + '\0' +
         '\1';
}

}  // namespace pelmora::decoder
