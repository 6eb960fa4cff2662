#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelmora::platform {

/// The bytes that a log line may have.
constexpr std::size_t kLongestLine = 8192;

/// `text` as one line of printable UTF-8, in which no file name can forge a second line, colour a
/// terminal or turn the writing direction: control characters, line separators, marks of direction
/// and bytes that are no UTF-8 become "\xNN", byte by byte. A text that is longer than
/// `kLongestLine` is cut between characters, and ends with "…".
[[nodiscard]] std::string printableLine(std::string_view text);

}  // namespace pelmora::platform
