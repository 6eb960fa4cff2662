#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::plist {

// Conversions between the text of the program (UTF-8) and of property list files (ASCII, or UTF-16
// with its high byte first). Strict both ways: overlong forms and unpaired surrogates are no text.

/// Whether every byte is below 0x80.
[[nodiscard]] bool isAscii(std::string_view bytes);
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The code point at `at`, which is moved behind it; nullopt where no valid sequence starts.
[[nodiscard]] std::optional<char32_t> nextCodePoint(std::string_view utf8, std::size_t& at);
/// `codePoint` must be a Unicode scalar value.
void appendUtf8(char32_t codePoint, std::string& out);

/// `utf8` must be valid.
void appendUtf16(std::string_view utf8, std::vector<std::uint8_t>& out);
/// nullopt for an odd number of bytes or an unpaired surrogate.
[[nodiscard]] std::optional<std::string> utf8FromUtf16(std::span<const std::uint8_t> bytes);

}  // namespace pelmora::plist
