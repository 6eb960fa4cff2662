#pragma once

#include "shared/ReferenceTime.h"
#include "shared/Result.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace pelmora::plist {

class Value;
using Bytes = std::vector<std::uint8_t>;
using Array = std::vector<Value>;
/// Keys in byte order, so that equal dictionaries give equal bytes.
using Dictionary = std::map<std::string, Value, std::less<>>;
/// A reference into a keyed archive's object table; only archives hold these.
struct Uid {
  std::uint32_t index = 0;
  bool operator==(const Uid&) const = default;
};

/// One value of a property list. Strings are UTF-8; bytes that are not go into `Bytes`.
/// Thread: a plain value.
class Value {
 public:
  using Storage = std::variant<std::monostate, bool, std::int64_t, double, ReferenceTime,
                               std::string, Bytes, Array, Dictionary, Uid>;

  Value() = default;  // null: inside archives only
  Value(bool value) : _storage(value) {}
  Value(int value) : _storage(static_cast<std::int64_t>(value)) {}
  Value(std::int64_t value) : _storage(value) {}
  Value(double value) : _storage(value) {}
  Value(ReferenceTime value) : _storage(value) {}
  Value(const char* value) : _storage(std::string(value)) {}
  Value(std::string value) : _storage(std::move(value)) {}
  Value(Bytes value) : _storage(std::move(value)) {}
  Value(Array value) : _storage(std::move(value)) {}
  Value(Dictionary value) : _storage(std::move(value)) {}
  Value(Uid value) : _storage(value) {}

  /// The value as a T, or nullptr when it is something else.
  template <typename T>
  [[nodiscard]] const T* get() const {
    return std::get_if<T>(&_storage);
  }
  template <typename T>
  [[nodiscard]] T* get() {
    return std::get_if<T>(&_storage);
  }
  [[nodiscard]] const Storage& storage() const { return _storage; }
  [[nodiscard]] bool isNull() const { return _storage.index() == 0; }

  /// As the platform's numbers convert: from any number, or a boolean; 0 for everything else.
  [[nodiscard]] std::int64_t integerValue() const;
  [[nodiscard]] double doubleValue() const;
  [[nodiscard]] bool boolValue() const;

  bool operator==(const Value&) const = default;

 private:
  Storage _storage;
};

/// The binary form ("bplist00"), equal strings, numbers, dates and data written once. A string that
/// is not UTF-8 is written as data.
[[nodiscard]] Bytes writeBinary(const Value& root);

/// Reads the binary form or the XML form. The bytes are untrusted: every count, offset and depth
/// (128 at most) is checked, shared references cannot amplify past a budget in proportion to the
/// input, and reading ends with an error, never with a crash.
[[nodiscard]] Result<Value> read(std::span<const std::uint8_t> bytes);

}  // namespace pelmora::plist
