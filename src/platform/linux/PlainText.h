#pragma once

#include <string>
#include <string_view>

namespace pelmora::platform {

/// Untrusted bytes as one line of text to show: UTF-8, a replacement character for each byte that
/// is not, no control characters, no blanks at either end.
[[nodiscard]] std::string plainText(std::string_view bytes);

}  // namespace pelmora::platform
