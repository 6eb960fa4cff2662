#pragma once

#include "platform/PropertyList.h"

#include <optional>

namespace pelmora::platform {
class Log;
}

namespace pelmora::config {

/// Between the chance of a stored source and what its cell shows: nothing reads as 0, and a text as
/// the number that it begins with, 0 without one. Anything but a number is logged and stays what it
/// is. Thread: any.
class ChanceValueTransformer {
 public:
  using Value = std::optional<plist::Value>;

  /// The log outlives it.
  explicit ChanceValueTransformer(platform::Log& log) : _log(log) {}

  [[nodiscard]] Value transformedValue(const Value& value) const;
  /// The same.
  [[nodiscard]] Value reverseTransformedValue(const Value& value) const;

 private:
  platform::Log& _log;
};

}  // namespace pelmora::config
