#pragma once

#include "platform/BigEndian.h"
#include "platform/PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pelmora::plist {

/// Puts a binary property list together, object by object: the caller numbers the objects from 0
/// (the top object) and adds them in that order, each container followed by the references to its
/// contents. References and offsets take as few bytes as the whole needs.
/// Thread: one at a time.
class BinaryObjectWriter {
 public:
  /// `objectCount` is exact; `expectedBytes` spares copying when it is right or a little high.
  explicit BinaryObjectWriter(std::uint64_t objectCount, std::size_t expectedBytes = 0);

  void null();
  void boolean(bool value);
  void integer(std::int64_t value);
  void real(double value);
  void date(ReferenceTime value);
  /// A string; data where the bytes are not UTF-8, so that nothing is lost.
  void text(std::string_view content);
  void data(std::span<const std::uint8_t> content);
  void uid(std::uint32_t index);
  /// `count` references follow.
  void array(std::uint64_t count);
  /// References to `pairs` keys follow, then those to as many values.
  void dictionary(std::uint64_t pairs);
  void ref(std::uint64_t object) { bigEndian(object, _refSize); }

  /// The whole file, once every object is in.
  [[nodiscard]] Bytes finish() &&;

  /// How many bytes a number from 0 to `largest` takes.
  [[nodiscard]] static unsigned bytesFor(std::uint64_t largest);

 private:
  void begin() { _offsets.push_back(_used); }
  void byte(unsigned value) { bigEndian(value, 1); }
  void counted(unsigned marker, std::uint64_t count);
  void plainInteger(std::int64_t value);
  void bytes(const void* from, std::size_t size);
  void bigEndian(std::uint64_t value, unsigned width) {
    writeBigEndian(value, width, room(sizeof value));
    _used += width;
  }
  /// Where the next `size` bytes go.
  std::uint8_t* room(std::size_t size) {
    if (_bytes.size() - _used < size) grow(size);
    return _bytes.data() + _used;
  }
  void grow(std::size_t size);

  const std::uint64_t _objectCount;
  const unsigned _refSize;
  Bytes _bytes;  // used up to `_used`
  std::size_t _used = 0;
  std::vector<std::uint64_t> _offsets;
};

}  // namespace pelmora::plist
