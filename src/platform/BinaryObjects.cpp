#include "platform/BinaryObjects.h"

#include "platform/UnicodeText.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace pelmora::plist {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerSize = 32;
constexpr unsigned kCountFollows = 0x0F;

}  // namespace

bool BinaryObjects::isBinary(std::span<const std::uint8_t> bytes) {
  return bytes.size() >= kMagic.size() &&
         std::equal(kMagic.begin(), kMagic.end(), bytes.begin(),
                    [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

Result<BinaryObjects> BinaryObjects::open(std::span<const std::uint8_t> bytes) {
  if (!isBinary(bytes)) return Error{"not a binary property list"};
  if (bytes.size() <= kMagic.size() + kTrailerSize) return Error{"the property list is cut short"};

  const std::uint8_t* trailer = bytes.data() + (bytes.size() - kTrailerSize);
  BinaryObjects objects;
  objects._bytes = bytes;
  objects._offsetSize = trailer[6];
  objects._refSize = trailer[7];
  objects._objectCount = readBigEndian(trailer + 8, 8);
  objects._top = readBigEndian(trailer + 16, 8);
  objects._tableOffset = readBigEndian(trailer + 24, 8);

  const bool sizesFit = objects._offsetSize >= 1 && objects._offsetSize <= 8 &&
                        objects._refSize >= 1 && objects._refSize <= 8;
  const std::uint64_t tableEnd = bytes.size() - kTrailerSize;
  if (!sizesFit || objects._tableOffset <= kMagic.size() || objects._tableOffset >= tableEnd) {
    return Error{"the property list's trailer is damaged"};
  }
  const std::uint64_t tableSize = tableEnd - objects._tableOffset;
  // Divided, not multiplied: the count may be anything up to 2^64 − 1.
  if (tableSize % objects._offsetSize != 0 ||
      objects._objectCount != tableSize / objects._offsetSize ||
      objects._top >= objects._objectCount) {
    return Error{"the property list's object table is damaged"};
  }
  return objects;
}

// Numbers are read as whole words here: behind every object and offset lies at least the trailer.
std::optional<ObjectView> BinaryObjects::at(std::uint64_t index) const {
  if (index >= _objectCount) return std::nullopt;
  const std::uint64_t offset =
      readBigEndian(_bytes.data() + _tableOffset + index * _offsetSize, _offsetSize);
  if (offset < kMagic.size() || offset >= _tableOffset) return std::nullopt;

  const unsigned marker = _bytes[offset];
  const unsigned low = marker & 0x0F;
  const std::uint64_t payload = offset + 1;
  const auto fixed = [&](ObjectType type, std::uint64_t width) -> std::optional<ObjectView> {
    if (width > _tableOffset - payload) return std::nullopt;
    return ObjectView{type, width, _bytes.data() + payload};
  };
  switch (marker >> 4) {
    case 0x0:
      if (marker == 0x00) return ObjectView{ObjectType::null, 0, nullptr};
      if (marker == 0x08 || marker == 0x09)
        return ObjectView{ObjectType::boolean, low & 1, nullptr};
      return std::nullopt;
    case 0x1:
      return low <= 4 ? fixed(ObjectType::integer, 1U << low) : std::nullopt;
    case 0x2:
      return low == 2 || low == 3 ? fixed(ObjectType::real, 1U << low) : std::nullopt;
    case 0x3:
      return low == 3 ? fixed(ObjectType::date, 8) : std::nullopt;
    case 0x4:
      return counted(ObjectType::data, low, 1, payload);
    case 0x5:
      return counted(ObjectType::ascii, low, 1, payload);
    case 0x6:
      return counted(ObjectType::utf16, low, 2, payload);
    case 0x8:
      return fixed(ObjectType::uid, low + 1);
    case 0xA:
      return counted(ObjectType::array, low, _refSize, payload);
    case 0xD:
      return counted(ObjectType::dictionary, low, 2 * std::uint64_t{_refSize}, payload);
    default:
      return std::nullopt;
  }
}

std::optional<ObjectView> BinaryObjects::counted(ObjectType type, unsigned low,
                                                 std::uint64_t unitSize, std::uint64_t at) const {
  std::uint64_t count = low;
  if (low == kCountFollows) {
    if (at >= _tableOffset) return std::nullopt;
    const unsigned marker = _bytes[at];
    if (marker < 0x10 || marker > 0x13) return std::nullopt;
    const unsigned width = 1U << (marker & 0x0F);
    if (width > _tableOffset - at - 1) return std::nullopt;
    count = readBigEndian(_bytes.data() + at + 1, width);
    at += 1 + width;
  }
  if (count > (_tableOffset - at) / unitSize) return std::nullopt;
  return ObjectView{type, count, _bytes.data() + at};
}

std::optional<std::int64_t> BinaryObjects::integer(const ObjectView& object) {
  if (object.type != ObjectType::integer) return std::nullopt;
  if (object.count <= 8) {
    return static_cast<std::int64_t>(
        readBigEndian(object.payload, static_cast<unsigned>(object.count)));
  }
  // Sixteen bytes hold the numbers from 2^63 on, which no value of ours can be.
  const std::uint64_t high = readBigEndian(object.payload, 8);
  const std::uint64_t low = readBigEndian(object.payload + 8, 8);
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const bool negative = high == std::numeric_limits<std::uint64_t>::max() && low > kLargest;
  if (!negative && (high != 0 || low > kLargest)) return std::nullopt;
  return static_cast<std::int64_t>(low);
}

std::optional<double> BinaryObjects::real(const ObjectView& object) {
  if (object.type != ObjectType::real && object.type != ObjectType::date) return std::nullopt;
  const std::uint64_t bits = readBigEndian(object.payload, static_cast<unsigned>(object.count));
  if (object.count == 8) return std::bit_cast<double>(bits);
  return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
}

std::optional<std::uint32_t> BinaryObjects::uid(const ObjectView& object) {
  if (object.type != ObjectType::uid || object.count > 8) return std::nullopt;
  const std::uint64_t value = readBigEndian(object.payload, static_cast<unsigned>(object.count));
  if (value > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  return static_cast<std::uint32_t>(value);
}

std::optional<std::string> BinaryObjects::text(const ObjectView& object) {
  if (object.type == ObjectType::ascii) {
    if (!isAscii(chars(object))) return std::nullopt;
    return std::string(chars(object));
  }
  if (object.type != ObjectType::utf16) return std::nullopt;
  return utf8FromUtf16({object.payload, static_cast<std::size_t>(object.count) * 2});
}

}  // namespace pelmora::plist
