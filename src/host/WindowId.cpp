#include "host/WindowId.h"

#include <charconv>

namespace pelmora::host {

namespace {

constexpr WindowId kLargest = 0x1fff'ffff;  // the protocol keeps the three highest bits clear

bool isHexadecimal(std::string_view text) {
  return text.starts_with("0x") || text.starts_with("0X");
}

}  // namespace

std::optional<WindowId> parseWindowId(std::string_view text) {
  const int base = isHexadecimal(text) ? 16 : 10;
  if (base == 16) text.remove_prefix(2);
  WindowId id = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, id, base);
  if (error != std::errc() || stop != end || id == 0 || id > kLargest) return std::nullopt;
  return id;
}

}  // namespace pelmora::host
