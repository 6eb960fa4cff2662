#include "decoder/PngHeader.h"

#include "decoder/ExifOrientation.h"

#include <unistd.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace pelmora::decoder {

namespace {

using namespace std::string_view_literals;

// Metadata comes in a handful of chunks; each step reads but its head.
constexpr int kMaxChunks = 256;
constexpr off_t kSignatureSize = 8;
constexpr off_t kHeadSize = 8;        // length and type
constexpr off_t kChunkOverhead = 12;  // those and the check sum
constexpr std::uint32_t kMaxExif = 65'000;

struct Chunk {
  std::uint32_t length = 0;
  std::string type;
};

/// `size` bytes of the file; fewer at its end.
std::string bytesAt(int descriptor, off_t offset, std::size_t size) {
  std::string bytes(size, '\0');
  const ssize_t count = pread(descriptor, bytes.data(), size, offset);
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

bool readHead(int descriptor, off_t offset, Chunk& chunk) {
  const std::string head = bytesAt(descriptor, offset, kHeadSize);
  if (head.size() != kHeadSize) return false;
  chunk.length = 0;
  for (const char byte : std::string_view(head).substr(0, 4)) {
    chunk.length = chunk.length << 8 | static_cast<unsigned char>(byte);
  }
  chunk.type = head.substr(4);
  return true;
}

VideoColors colorsIn(std::string_view content) {
  if (content.size() != 4) return {};
  return {.primaries = static_cast<unsigned char>(content[0]),
          .transfer = static_cast<unsigned char>(content[1])};
}

int orientationIn(std::string_view content) {
  // As it would stand in a JPEG.
  const std::string exif = std::string("Exif\0\0"sv) + std::string(content);
  return exifOrientation({reinterpret_cast<const unsigned char*>(exif.data()), exif.size()});
}

}  // namespace

PngHeader readPngHeader(int descriptor) {
  PngHeader header;
  off_t offset = kSignatureSize;
  Chunk chunk;
  for (int i = 0; i < kMaxChunks && readHead(descriptor, offset, chunk); ++i) {
    if (chunk.type == "IDAT") break;
    if (chunk.type == "cICP" && chunk.length == 4) {
      header.colors = colorsIn(bytesAt(descriptor, offset + kHeadSize, chunk.length));
    } else if (chunk.type == "eXIf" && chunk.length <= kMaxExif) {
      header.orientation = orientationIn(bytesAt(descriptor, offset + kHeadSize, chunk.length));
    }
    offset += kChunkOverhead + static_cast<off_t>(chunk.length);
  }
  return header;
}

}  // namespace pelmora::decoder
