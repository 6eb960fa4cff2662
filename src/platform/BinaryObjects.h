#pragma once

#include "platform/BigEndian.h"
#include "platform/PropertyList.h"
#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pelmora::plist {

enum class ObjectType : std::uint8_t {
  null,
  boolean,
  integer,
  real,
  date,
  data,
  ascii,
  utf16,
  uid,
  array,
  dictionary
};

/// One object of a binary property list, where it lies in the file: its whole payload is inside.
struct ObjectView {
  ObjectType type = ObjectType::null;
  /// Elements of an array, pairs of a dictionary, units of a UTF-16 string, truth of a boolean,
  /// bytes of everything else.
  std::uint64_t count = 0;
  const std::uint8_t* payload = nullptr;
};

/// The object table of a binary property list, read in place. The bytes are untrusted: whatever an
/// answer points at has been checked to lie in them. They are borrowed and must outlive this.
/// Thread: immutable.
class BinaryObjects {
 public:
  [[nodiscard]] static bool isBinary(std::span<const std::uint8_t> bytes);
  [[nodiscard]] static Result<BinaryObjects> open(std::span<const std::uint8_t> bytes);

  [[nodiscard]] std::uint64_t size() const { return _objectCount; }
  [[nodiscard]] std::uint64_t top() const { return _top; }
  /// nullopt for an index out of range and for an object that is damaged or of an unknown type.
  [[nodiscard]] std::optional<ObjectView> at(std::uint64_t index) const;

  /// The `i`-th reference of a container: an array's elements; a dictionary's keys, then its
  /// values. Not checked to be below `size()`: `at` does that.
  [[nodiscard]] std::uint64_t ref(const ObjectView& container, std::uint64_t i) const {
    return readBigEndian(container.payload + i * _refSize, _refSize);
  }

  /// The value of an integer; nullopt for other objects and for what 64 bits with a sign don't
  /// hold.
  [[nodiscard]] static std::optional<std::int64_t> integer(const ObjectView& object);
  /// The value of a real or of a date.
  [[nodiscard]] static std::optional<double> real(const ObjectView& object);
  [[nodiscard]] static std::optional<std::uint32_t> uid(const ObjectView& object);
  /// The text of a string, as UTF-8; nullopt for other objects and for what is no Unicode.
  [[nodiscard]] static std::optional<std::string> text(const ObjectView& object);
  /// The raw bytes of data or of an ASCII string; not checked to be ASCII.
  [[nodiscard]] static std::string_view chars(const ObjectView& object) {
    return {reinterpret_cast<const char*>(object.payload), static_cast<std::size_t>(object.count)};
  }

 private:
  BinaryObjects() = default;
  [[nodiscard]] std::optional<ObjectView> counted(ObjectType type, unsigned low,
                                                  std::uint64_t unitSize, std::uint64_t at) const;

  std::span<const std::uint8_t> _bytes;
  std::uint64_t _objectCount = 0;
  std::uint64_t _top = 0;
  std::uint64_t _tableOffset = 0;
  unsigned _offsetSize = 0;
  unsigned _refSize = 0;
};

}  // namespace pelmora::plist
