#pragma once

#include "platform/PropertyList.h"

#include <optional>
#include <string_view>

namespace pelmora::plist {

// The texts of numbers, dates and data in XML property lists; white space around them is allowed.
// No locale is asked. nullopt for everything that is not wholly one of them.

/// Decimal, or hexadecimal after "0x", with an optional sign.
[[nodiscard]] std::optional<std::int64_t> integerFromText(std::string_view text);
/// With a point, whatever the locale; also "nan" and "inf".
[[nodiscard]] std::optional<double> realFromText(std::string_view text);
/// "2001-01-01T00:00:00Z".
[[nodiscard]] std::optional<ReferenceTime> dateFromText(std::string_view text);
/// Base 64, with white space anywhere.
[[nodiscard]] std::optional<Bytes> dataFromText(std::string_view text);

}  // namespace pelmora::plist
