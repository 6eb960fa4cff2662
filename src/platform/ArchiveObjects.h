#pragma once

#include "platform/BinaryObjects.h"
#include "shared/Result.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace pelmora::plist {

/// The objects of a keyed archive, read in place: "$objects" by their number, and the fields and
/// classes of those that are dictionaries. The bytes are untrusted, are borrowed and must outlive
/// this. Thread: immutable.
class ArchiveObjects {
 public:
  /// Number of the object that stands for no object.
  static constexpr std::uint32_t kNull = 0;

  [[nodiscard]] static Result<ArchiveObjects> open(std::span<const std::uint8_t> bytes);

  /// The number of the archived value.
  [[nodiscard]] std::uint32_t root() const { return _root; }
  [[nodiscard]] std::uint64_t size() const { return _list.count; }
  /// An object by its number; nullopt when there is none or it is damaged.
  [[nodiscard]] std::optional<ObjectView> object(std::uint32_t number) const;

  /// The field `name` of an object that is a dictionary of 64 fields at most, as it stands there.
  [[nodiscard]] std::optional<ObjectView> field(const ObjectView& object,
                                                std::string_view name) const;
  /// The same, followed when it is the number of another object.
  [[nodiscard]] std::optional<ObjectView> resolvedField(const ObjectView& object,
                                                        std::string_view name) const;
  /// The array of numbers in the field `name`; nullopt when there is none.
  [[nodiscard]] std::optional<ObjectView> numbers(const ObjectView& object,
                                                  std::string_view name) const;
  /// An element of such an array; nullopt when it is no number of an object.
  [[nodiscard]] std::optional<std::uint32_t> number(const ObjectView& numbers,
                                                    std::uint64_t i) const;

  /// The name of an object's class; empty when it has none.
  [[nodiscard]] std::string_view className(const ObjectView& object) const;

 private:
  explicit ArchiveObjects(const BinaryObjects& objects) : _objects(objects) {}
  [[nodiscard]] bool isArchive(const ObjectView& top) const;

  BinaryObjects _objects;
  ObjectView _list;
  std::uint32_t _root = kNull;
};

// The classes that are read: the mutable and the plain one of each pair are one.
[[nodiscard]] bool isDictionaryClass(std::string_view name);
[[nodiscard]] bool isArrayClass(std::string_view name);
[[nodiscard]] bool isStringClass(std::string_view name);
[[nodiscard]] bool isDataClass(std::string_view name);

}  // namespace pelmora::plist
