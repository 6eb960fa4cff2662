#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelmora::platform {

/// What a desktop entry file (NAME.desktop) says, as far as links need it.
struct DesktopEntry {
  std::string type;
  std::string url;

  /// Entry files larger than this are not read.
  static constexpr std::size_t kMaxBytes = 64 * 1024;

  [[nodiscard]] static bool hasEntryName(std::string_view fileName);
  /// The keys of the group "[Desktop Entry]", escapes resolved; empty strings for missing ones. Any
  /// bytes will do: lines that make no sense are passed over.
  [[nodiscard]] static DesktopEntry parse(std::string_view text);
  /// Whether it leads to a `file:` URL.
  [[nodiscard]] bool isFileLink() const;
};

}  // namespace pelmora::platform
