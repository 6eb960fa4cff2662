#include "platform/PrintableLine.h"

#include <cstdint>

namespace pelmora::platform {

namespace {

constexpr std::string_view kEllipsis = "\u2026";

struct Character {
  std::size_t length = 1;
  bool printable = false;
};

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// Whether a character would do something to the line rather than stand in it.
bool isPrintable(std::uint32_t code) {
  const auto isIn = [code](std::uint32_t first, std::uint32_t last) {
    return code >= first && code <= last;
  };
  if (code < 0x20 || isIn(0x7F, 0x9F)) return false;               // controls
  if (isIn(0x2028, 0x2029)) return false;                          // line and paragraph separators
  if (isIn(0x200E, 0x200F) || code == 0x61C) return false;         // marks of direction
  if (isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069)) return false;  // embeddings and overrides
  return true;
}

/// The bytes of a character by its first one; 0 for a byte that begins none.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

/// Too long a form, half a surrogate pair, or beyond Unicode.
bool isWellFormed(std::uint32_t code, std::size_t length) {
  if (length == 3) return code >= 0x800 && (code < 0xD800 || code > 0xDFFF);
  if (length == 4) return code >= 0x10000 && code <= 0x10FFFF;
  return true;
}

/// The character that `text`, which is not empty, begins with.
Character firstCharacter(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lengthFrom(lead);
  if (length == 0 || length > text.size()) return {};
  std::uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
  for (const char byte : text.substr(1, length - 1)) {
    if (!isContinuation(byte)) return {};
    code = code << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  if (!isWellFormed(code, length)) return {};
  return {length, isPrintable(code)};
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
