#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform {

/// No file has more tags than this; the rest is dropped.
inline constexpr std::size_t kMaxTags = 256;
/// What is longer is cut, between characters.
inline constexpr std::size_t kMaxTagBytes = 2048;

/// The tags in a value of `user.xdg.tags`: between commas, without blanks around them. In all tags,
/// bytes that are no text become replacement characters, control characters go, and what is empty
/// then is dropped.
[[nodiscard]] std::vector<std::string> tagsOfText(std::string_view value);

/// The tags in a value of `_kMDItemUserTags`, which comes with files from a Mac: a property list,
/// an array of names, each with the number of its colour after a line break. Anything else has
/// none.
[[nodiscard]] std::vector<std::string> tagsOfPropertyList(std::string_view value);

/// The tags in a file's extended attributes: the desktop's, else those from a Mac. `value` gives
/// the value of the attribute that it is asked for.
[[nodiscard]] std::vector<std::string> tagsOfAttributes(
    const std::function<std::optional<std::string>(const char* name)>& value);

}  // namespace pelmora::platform
