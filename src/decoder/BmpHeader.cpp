#include "decoder/BmpHeader.h"

#include "decoder/PictureLimits.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kRowsOffset = 10;  // where the file header says at which byte the rows begin
constexpr std::uint32_t kOldHeader = 12;
constexpr std::array<std::uint32_t, 7> kHeaders{kOldHeader, 40, 52, 56, 64, 108, 124};
constexpr std::size_t kMasks = 12;  // red, green, blue, where the header has no place for them
constexpr std::size_t kMostBegin = kFileHeader + kHeaders.back() + 4 * 256;

// The loader counts columns in 32 bits and skips up to 255 with four bytes, unchecked: with more
// bytes than these it could be led to count over the end, and to write anywhere.
constexpr std::int64_t kMostRunBytes = 8 << 20;
// What runs can make of a byte. Less would be a picture that is mostly left out.
constexpr std::int64_t kMostPixelsPerByte = 128;

enum Compression : std::uint32_t { kPlain = 0, kRuns8 = 1, kRuns4 = 2, kBitMasks = 3 };

struct Fields {
  std::uint32_t header = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;  // negative where the rows are stored from the top
  std::uint32_t bits = 0;
  std::uint32_t compression = kPlain;
  std::uint32_t colors = 0;  // 0: as many as there can be

  [[nodiscard]] bool hasRuns() const { return compression == kRuns8 || compression == kRuns4; }
  [[nodiscard]] bool hasAlpha() const {
    return hasRuns() || (bits == 32 && compression == kBitMasks);
  }
};

Error damaged(const char* why) { return Error{"it is damaged (" + std::string(why) + ")"}; }
Error cutShort() { return damaged("it is cut short"); }

std::uint32_t numberAt(std::string_view bytes, std::size_t offset, std::size_t count = 4) {
  std::uint32_t number = 0;
  while (count-- > 0) number = number << 8 | static_cast<unsigned char>(bytes[offset + count]);
  return number;
}

Fields fieldsOf(std::string_view bytes, std::uint32_t header) {
  if (header == kOldHeader) {
    return {.header = header,
            .width = static_cast<std::int16_t>(numberAt(bytes, 18, 2)),
            .height = static_cast<std::int16_t>(numberAt(bytes, 20, 2)),
            .bits = numberAt(bytes, 24, 2)};
  }
  return {.header = header,
          .width = static_cast<std::int32_t>(numberAt(bytes, 18)),
          .height = static_cast<std::int32_t>(numberAt(bytes, 22)),
          .bits = numberAt(bytes, 28, 2),
          .compression = numberAt(bytes, 30),
          .colors = numberAt(bytes, 46)};
}

bool isReadHere(const Fields& fields) {
  switch (fields.compression) {
    case kPlain:
      return fields.bits == 1 || fields.bits == 4 || fields.bits == 8 || fields.bits == 16 ||
             fields.bits == 24 || fields.bits == 32;
    case kRuns8:
      return fields.bits == 8;
    case kRuns4:
      return fields.bits == 4;
    case kBitMasks:
      return fields.bits == 16 || fields.bits == 32;
    default:
      return false;
  }
}

Result<PixelSize> sizeOf(const Fields& fields) {
  const std::int64_t height = std::abs(fields.height);
  if (height > std::numeric_limits<std::int32_t>::max()) return damaged("it is too high");
  const PixelSize size{static_cast<int>(fields.width), static_cast<int>(height)};
  const int bytes = fields.bits == 32 || fields.hasRuns() ? 4 : 3;
  if (Status status =
          checkPictureLimits({.size = size, .bytesPerPixel = bytes, .heldBytesPerPixel = bytes});
      !status) {
    return status.error();
  }
  return size;
}

/// The bytes between the header and the rows that are needed to read them.
Result<std::size_t> tableBytes(const Fields& fields) {
  if (fields.bits > 8) {
    const bool hasMasksBehind =
        fields.compression == kBitMasks && (fields.header == 40 || fields.header == 64);
    return hasMasksBehind ? kMasks : std::size_t{0};
  }
  const std::size_t most = std::size_t{1} << fields.bits;
  if (fields.colors > most) return damaged("it has too many colours");
  return (fields.colors == 0 ? most : fields.colors) * (fields.header == kOldHeader ? 3 : 4);
}

Status checkRows(const Fields& fields, const BmpHeader& header) {
  const auto [width, height] = header.size;
  const std::int64_t pixels = std::int64_t{width} * height;
  const std::int64_t plain = (std::int64_t{width} * fields.bits + 31) / 32 * 4 * height;
  const std::int64_t least = fields.hasRuns() ? pixels / kMostPixelsPerByte : plain;
  if (header.rowsBytes < std::max(least, std::int64_t{1})) return cutShort();
  if (fields.hasRuns() && header.rowsBytes > kMostRunBytes) {
    return Error{"it is larger than what is read of its kind"};
  }
  return Done{};
}

std::string beginOf(int descriptor) {
  std::string bytes(kMostBegin, '\0');
  const ssize_t count = pread(descriptor, bytes.data(), bytes.size(), 0);
  bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return bytes;
}

/// Loaders differ in what they make of bytes that belong to nothing, so those are left out.
void letRowsFollow(std::string& begin, std::size_t size) {
  begin.resize(size);
  for (std::size_t i = 0; i < 4; ++i) begin[kRowsOffset + i] = static_cast<char>(size >> (8 * i));
}

}  // namespace

Result<BmpHeader> readBmpHeader(int descriptor) {
  std::string begin = beginOf(descriptor);
  if (begin.size() < kFileHeader + kOldHeader) return cutShort();
  const std::uint32_t headerSize = numberAt(begin, kFileHeader);
  const bool isKnown = std::find(kHeaders.begin(), kHeaders.end(), headerSize) != kHeaders.end();
  if (isKnown && begin.size() < kFileHeader + headerSize) return cutShort();
  const Fields fields = isKnown ? fieldsOf(begin, headerSize) : Fields{};
  if (!isReadHere(fields)) return Error{"it is of a kind that is not read"};
  const Result<PixelSize> size = sizeOf(fields);
  if (!size) return size.error();
  const Result<std::size_t> table = tableBytes(fields);
  if (!table) return table.error();
  const std::size_t needed = kFileHeader + headerSize + *table;
  const std::uint32_t rowsOffset = numberAt(begin, kRowsOffset);
  if (begin.size() < needed) return cutShort();
  if (rowsOffset < needed) return damaged("its rows begin too early");
  struct stat file {};
  if (fstat(descriptor, &file) != 0) return Error{"it cannot be read"};
  letRowsFollow(begin, needed);
  BmpHeader header{.size = *size,
                   .hasAlpha = fields.hasAlpha(),
                   .begin = std::move(begin),
                   .rowsOffset = rowsOffset,
                   .rowsBytes = file.st_size - rowsOffset};
  if (const Status status = checkRows(fields, header); !status) return status.error();
  return header;
}

}  // namespace pelmora::decoder
