#pragma once

#include "platform/metadata/AttributeTable.h"
#include "platform/predicate/PredicateEvaluation.h"

#include <map>
#include <string_view>
#include <vector>

namespace pelmora::platform::metadata {

/// Of an attribute, by its position in the table: its values, one at least, of its type. Texts are
/// UTF-8 without control characters; the names and paths of files are as their bytes.
/// Thread: a plain value.
class FileMetadata : public predicate::Metadata {
 public:
  using Values = std::map<std::size_t, std::vector<predicate::Constant>>;

  FileMetadata() = default;
  explicit FileMetadata(Values values) : _values(std::move(values)) {}

  /// Values that are none of the attribute's type, or more than it may have, are left out.
  void set(std::size_t attribute, std::vector<predicate::Constant> values);
  /// The same by name; an unknown one is ignored.
  void set(std::string_view attribute, std::vector<predicate::Constant> values);

  [[nodiscard]] const Values& all() const { return _values; }
  [[nodiscard]] std::span<const predicate::Constant> values(
      std::string_view attribute) const override;

  bool operator==(const FileMetadata& other) const { return _values == other._values; }

 private:
  Values _values;
};

// The most that is kept of one file: what is longer is cut, and what is more is left out.
inline constexpr std::size_t kMaxTextBytes = 2048;  // of a value, cut between characters
inline constexpr std::size_t kMaxValues = 256;      // of an attribute

}  // namespace pelmora::platform::metadata
