#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace pelmora::platform::metadata {

enum class ValueType : std::uint8_t { text, integer, real, date };

/// Where an attribute is read from.
enum class Origin : std::uint8_t {
  file,      // the file system: name, size, dates, extended attributes
  embedded,  // what is embedded in the file: Exif, IPTC, XMP, the picture's header
  both       // the file system, or where that has none, what is embedded
};

/// One attribute of files, under the platform's public name.
struct Attribute {
  std::string_view name;
  ValueType type = ValueType::text;
  bool hasSeveral = false;  // such as keywords; of the others there is one value at most
  Origin origin = Origin::embedded;
  /// The keys in the file, of Exiv2, with blanks between, the first that is there counts (where
  /// there may be several values: all of them, without doubles); or in brackets what it is derived
  /// from in another way.
  std::string_view readFrom;
};

/// All attributes that are known. Thread: any; it never changes. Positions in it are used in the
/// index and between processes; `kAttributeTableVersion` rises when it or the reading changes.
[[nodiscard]] std::span<const Attribute> attributeTable();
inline constexpr int kAttributeTableVersion = 2;

/// The position of a name in the table.
[[nodiscard]] std::optional<std::size_t> attributeNamed(std::string_view name);

}  // namespace pelmora::platform::metadata
