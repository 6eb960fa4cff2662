#include "platform/BinaryObjectWriter.h"

#include "platform/UnicodeText.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>
#include <utility>

namespace pelmora::plist {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr unsigned kCountFollows = 0x0F;
constexpr std::size_t kGrowth = 4096;

}  // namespace

BinaryObjectWriter::BinaryObjectWriter(std::uint64_t objectCount, std::size_t expectedBytes)
    : _objectCount(objectCount), _refSize(bytesFor(objectCount == 0 ? 0 : objectCount - 1)) {
  _bytes.reserve(expectedBytes + kGrowth);
  _offsets.reserve(objectCount);
  bytes(kMagic.data(), kMagic.size());
}

unsigned BinaryObjectWriter::bytesFor(std::uint64_t largest) {
  const auto bits = static_cast<unsigned>(std::bit_width(largest));
  return bits == 0 ? 1 : (bits + 7) / 8;
}

void BinaryObjectWriter::null() {
  begin();
  byte(0x00);
}

void BinaryObjectWriter::boolean(bool value) {
  begin();
  byte(value ? 0x09 : 0x08);
}

void BinaryObjectWriter::integer(std::int64_t value) {
  begin();
  plainInteger(value);
}

// Integers of 1, 2 and 4 bytes are unsigned in this format, so a negative one takes all 8.
void BinaryObjectWriter::plainInteger(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  const unsigned log2 = bits <= 0xFF ? 0 : bits <= 0xFFFF ? 1 : bits <= 0xFFFFFFFF ? 2 : 3;
  byte(0x10 | log2);
  bigEndian(bits, 1U << log2);
}

void BinaryObjectWriter::real(double value) {
  begin();
  byte(0x23);
  bigEndian(std::bit_cast<std::uint64_t>(value), 8);
}

void BinaryObjectWriter::date(ReferenceTime value) {
  begin();
  byte(0x33);
  bigEndian(std::bit_cast<std::uint64_t>(value.seconds), 8);
}

void BinaryObjectWriter::text(std::string_view content) {
  if (isAscii(content)) {
    begin();
    counted(0x50, content.size());
    bytes(content.data(), content.size());
  } else if (isUtf8(content)) {
    begin();
    Bytes units;
    appendUtf16(content, units);
    counted(0x60, units.size() / 2);
    bytes(units.data(), units.size());
  } else {
    data({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()});
  }
}

void BinaryObjectWriter::data(std::span<const std::uint8_t> content) {
  begin();
  counted(0x40, content.size());
  bytes(content.data(), content.size());
}

void BinaryObjectWriter::uid(std::uint32_t index) {
  begin();
  const unsigned width = bytesFor(index);
  byte(0x80 | (width - 1));
  bigEndian(index, width);
}

void BinaryObjectWriter::array(std::uint64_t count) {
  begin();
  counted(0xA0, count);
}

void BinaryObjectWriter::dictionary(std::uint64_t pairs) {
  begin();
  counted(0xD0, pairs);
}

void BinaryObjectWriter::counted(unsigned marker, std::uint64_t count) {
  if (count < kCountFollows) {
    byte(marker | static_cast<unsigned>(count));
    return;
  }
  byte(marker | kCountFollows);
  plainInteger(static_cast<std::int64_t>(count));
}

void BinaryObjectWriter::bytes(const void* from, std::size_t size) {
  if (size == 0) return;
  std::memcpy(room(size), from, size);
  _used += size;
}

// In small steps: a vector's new bytes are zeroed, which costs least while they are still in the
// processor's cache when the real ones come.
void BinaryObjectWriter::grow(std::size_t size) { _bytes.resize(_used + std::max(size, kGrowth)); }

Bytes BinaryObjectWriter::finish() && {
  assert(_offsets.size() == _objectCount && "as many objects as announced");
  const std::uint64_t table = _used;
  const unsigned offsetSize = bytesFor(table);
  for (const std::uint64_t offset : _offsets) bigEndian(offset, offsetSize);

  bigEndian(0, 6);
  byte(offsetSize);
  byte(_refSize);
  bigEndian(_objectCount, 8);
  bigEndian(0, 8);
  bigEndian(table, 8);
  _bytes.resize(_used);
  return std::move(_bytes);
}

}  // namespace pelmora::plist
