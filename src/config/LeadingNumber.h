#pragma once

#include <string_view>

namespace pelmora::config {

/// The number that a text begins with, in the notation of programs whatever the user's language;
/// blanks before it are skipped. 0 without one. What is too large for a double is infinite.
[[nodiscard]] double leadingNumber(std::string_view text);

}  // namespace pelmora::config
