#pragma once

#include <compare>
#include <cstdint>
#include <string_view>

namespace pelmora::sources {

// A screens string is empty for every screen, else screen numbers joined by "," without blanks.

/// Whether `screens` names the screen. Index 0 stands for any screen. Numbers below 10 are looked
/// for as a digit anywhere, so "12" includes the screens 1, 2 and 12: kept on purpose.
[[nodiscard]] bool includesScreenIndex(std::string_view screens, std::uint64_t index);

/// Orders strings with their runs of digits as numbers: "2" before "10". Numbers of any length are
/// compared; leading zeros make no difference.
[[nodiscard]] std::weak_ordering numericCompare(std::string_view left, std::string_view right);

}  // namespace pelmora::sources
