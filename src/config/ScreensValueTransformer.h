#pragma once

#include "platform/PropertyList.h"

#include <optional>
#include <string>

namespace pelmora::config {

/// Between the screens string of a stored source ("1,3"; "" for every screen) and what its cell
/// shows ("1, 3"; "All"). Thread: any.
class ScreensValueTransformer {
 public:
  using Value = std::optional<plist::Value>;

  /// What the user reads for every screen, in the user's language.
  explicit ScreensValueTransformer(std::string all) : _all(std::move(all)) {}

  /// Stored to shown. Nothing shows as every screen; what is no text has no form.
  [[nodiscard]] Value transformedValue(const Value& value) const;
  /// Shown to stored. What is no text, nothing included, has no form.
  [[nodiscard]] Value reverseTransformedValue(const Value& value) const;

 private:
  const std::string _all;
};

}  // namespace pelmora::config
