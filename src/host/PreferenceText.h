#pragma once

#include "platform/PropertyList.h"
#include "shared/Result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::host {

// The preferences as a person types and reads them.

/// The value that `text` means for a key, of the key's type; for a key that the saver does not
/// know, a boolean, a number or else a string. Errors say what was expected.
[[nodiscard]] Result<plist::Value> parsePreference(std::string_view key, const std::string& text);

/// A value in one line: JSON, but that data reads as "<N bytes>".
[[nodiscard]] std::string textOfPreference(const plist::Value& value);
/// The same of a key's value: an archived filter reads as its text.
[[nodiscard]] std::string textOfPreference(std::string_view key, const plist::Value& value);

/// What a person had better know of a key's value that is written.
[[nodiscard]] std::optional<std::string> noteOnPreference(std::string_view key,
                                                          const plist::Value& value);

/// The saver's keys in the order of their help, then what else is stored.
[[nodiscard]] std::vector<std::string> preferenceKeys(const plist::Dictionary& stored);

/// The keys and what they mean, a line each.
[[nodiscard]] std::string describePreferences();

}  // namespace pelmora::host
