#include "platform/BinaryObjectWriter.h"

#include "platform/UnicodeText.h"

#include <bit>
#include <cassert>

namespace pelmora::plist {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr unsigned kCountFollows = 0x0F;

}  // namespace

BinaryObjectWriter::BinaryObjectWriter(std::uint64_t objectCount, std::size_t expectedBytes)
    : _objectCount(objectCount), _refSize(bytesFor(objectCount == 0 ? 0 : objectCount - 1)) {
  _bytes.reserve(expectedBytes);
  _offsets.reserve(objectCount);
  _bytes.insert(_bytes.end(), kMagic.begin(), kMagic.end());
}

unsigned BinaryObjectWriter::bytesFor(std::uint64_t largest) {
  const auto bits = static_cast<unsigned>(std::bit_width(largest));
  return bits == 0 ? 1 : (bits + 7) / 8;
}

void BinaryObjectWriter::null() {
  begin();
  _bytes.push_back(0x00);
}

void BinaryObjectWriter::boolean(bool value) {
  begin();
  _bytes.push_back(value ? 0x09 : 0x08);
}

void BinaryObjectWriter::integer(std::int64_t value) {
  begin();
  plainInteger(value);
}

// Integers of 1, 2 and 4 bytes are unsigned in this format, so a negative one takes all 8.
void BinaryObjectWriter::plainInteger(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  const unsigned log2 = bits <= 0xFF ? 0 : bits <= 0xFFFF ? 1 : bits <= 0xFFFFFFFF ? 2 : 3;
  _bytes.push_back(static_cast<std::uint8_t>(0x10 | log2));
  bigEndian(bits, 1U << log2);
}

void BinaryObjectWriter::real(double value) {
  begin();
  _bytes.push_back(0x23);
  bigEndian(std::bit_cast<std::uint64_t>(value), 8);
}

void BinaryObjectWriter::date(ReferenceTime value) {
  begin();
  _bytes.push_back(0x33);
  bigEndian(std::bit_cast<std::uint64_t>(value.seconds), 8);
}

void BinaryObjectWriter::text(std::string_view bytes) {
  if (isAscii(bytes)) {
    begin();
    counted(0x50, bytes.size());
    _bytes.insert(_bytes.end(), bytes.begin(), bytes.end());
  } else if (isUtf8(bytes)) {
    begin();
    counted(0x60, utf16Length(bytes));
    appendUtf16(bytes, _bytes);
  } else {
    data({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }
}

void BinaryObjectWriter::data(std::span<const std::uint8_t> bytes) {
  begin();
  counted(0x40, bytes.size());
  _bytes.insert(_bytes.end(), bytes.begin(), bytes.end());
}

void BinaryObjectWriter::uid(std::uint32_t index) {
  begin();
  const unsigned width = bytesFor(index);
  _bytes.push_back(static_cast<std::uint8_t>(0x80 | (width - 1)));
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

void BinaryObjectWriter::ref(std::uint64_t object) { bigEndian(object, _refSize); }

void BinaryObjectWriter::counted(unsigned marker, std::uint64_t count) {
  if (count < kCountFollows) {
    _bytes.push_back(static_cast<std::uint8_t>(marker | static_cast<unsigned>(count)));
    return;
  }
  _bytes.push_back(static_cast<std::uint8_t>(marker | kCountFollows));
  plainInteger(static_cast<std::int64_t>(count));
}

void BinaryObjectWriter::bigEndian(std::uint64_t value, unsigned width) {
  std::uint8_t bytes[8];
  for (unsigned i = 0; i < width; ++i) {
    bytes[i] = static_cast<std::uint8_t>(value >> (8 * (width - 1 - i)));
  }
  _bytes.insert(_bytes.end(), bytes, bytes + width);
}

Bytes BinaryObjectWriter::finish() && {
  assert(_offsets.size() == _objectCount && "as many objects as announced");
  const std::uint64_t table = _bytes.size();
  const unsigned offsetSize = bytesFor(table);
  for (const std::uint64_t offset : _offsets) bigEndian(offset, offsetSize);

  bigEndian(0, 6);
  _bytes.push_back(static_cast<std::uint8_t>(offsetSize));
  _bytes.push_back(static_cast<std::uint8_t>(_refSize));
  bigEndian(_objectCount, 8);
  bigEndian(0, 8);
  bigEndian(table, 8);
  return std::move(_bytes);
}

}  // namespace pelmora::plist
