#pragma once

#include "shared/Result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace pelmora::host {

// A source's values as a person types and reads them.

inline constexpr double kLowestChance = 0.001;  // percent
inline constexpr double kHighestChance = 100;

[[nodiscard]] Result<double> parseChance(std::string_view text);
/// "sun,mon", "all" or "none", to a days mask; names in English, whole or their first three
/// letters.
[[nodiscard]] Result<std::uint64_t> parseDays(std::string_view text);
/// "1,3" or "all", to a screens string.
[[nodiscard]] Result<std::string> parseScreens(std::string_view text);

/// "every day", "no day" or "sun,mon".
[[nodiscard]] std::string textOfDays(std::uint64_t days);
/// "all screens" or "screens 1,3".
[[nodiscard]] std::string textOfScreens(const std::string& screens);

}  // namespace pelmora::host
