#include "platform/PrintableLine.h"

#include "platform/UnicodeText.h"

#include <optional>

namespace pelmora::platform {

namespace {

constexpr std::string_view kEllipsis = "\u2026";

struct Character {
  std::size_t length = 1;
  bool printable = false;
};

/// Whether a character would do something to the line rather than stand in it.
bool isPrintable(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  if (code < 0x20 || isIn(0x7F, 0x9F)) return false;               // controls
  if (isIn(0x2028, 0x2029)) return false;                          // line and paragraph separators
  if (isIn(0x200E, 0x200F) || code == 0x61C) return false;         // marks of direction
  if (isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069)) return false;  // embeddings and overrides
  return true;
}

/// The character that `text`, which is not empty, begins with; a byte that begins none counts
/// alone.
Character firstCharacter(std::string_view text) {
  std::size_t length = 0;
  const std::optional<char32_t> code = plist::nextCodePoint(text, length);
  if (!code) return {};
  return {length, isPrintable(*code)};
}

void appendEscaped(std::string& line, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (const char each : bytes) {
    const auto byte = static_cast<unsigned char>(each);
    line += "\\x";
    line += kDigits[byte >> 4];
    line += kDigits[byte & 15];
  }
}

}  // namespace

std::string printableLine(std::string_view text) {
  std::string line;
  std::size_t cutAt = 0;  // as much of the line as leaves room for the ellipsis
  while (!text.empty()) {
    if (line.size() + kEllipsis.size() <= kLongestLine) cutAt = line.size();
    const Character next = firstCharacter(text);
    const std::string_view bytes = text.substr(0, next.length);
    if (next.printable) {
      line += bytes;
    } else {
      appendEscaped(line, bytes);
    }
    if (line.size() > kLongestLine) return line.substr(0, cutAt).append(kEllipsis);
    text.remove_prefix(next.length);
  }
  return line;
}

}  // namespace pelmora::platform
