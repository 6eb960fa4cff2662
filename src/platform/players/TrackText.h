#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelmora::platform::players {

/// The characters that a text of a track may have.
constexpr std::size_t kLongestTrackText = 512;

/// What a player says, as one short line to show: UTF-8 of at most `kLongestTrackText` characters,
/// without control characters, line separators, marks of direction, bytes that are no UTF-8, and
/// blanks at either end. No more is read than is needed.
[[nodiscard]] std::string trackText(std::string_view bytes);

}  // namespace pelmora::platform::players
