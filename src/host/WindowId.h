#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pelmora::host {

/// A window of the X server, as hosts name the one to draw into.
using WindowId = std::uint32_t;

/// The window that a text names, in decimal or after 0x in hexadecimal; nullopt for anything else,
/// such as zero, a number that no window can have, or the words that hosts without an X server
/// hand over.
[[nodiscard]] std::optional<WindowId> parseWindowId(std::string_view text);

}  // namespace pelmora::host
