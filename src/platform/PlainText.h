#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelmora::platform {

/// Untrusted bytes as one line of text to show: UTF-8, a replacement character for each byte that
/// is not, no control characters, no blanks at either end.
[[nodiscard]] std::string plainText(std::string_view bytes);

/// The same, no longer than that: cut between characters.
[[nodiscard]] std::string plainText(std::string_view bytes, std::size_t mostBytes);

/// Whether a text is such a line already.
[[nodiscard]] bool isPlainText(std::string_view text);

}  // namespace pelmora::platform
