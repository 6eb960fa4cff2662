#include "platform/players/TrackText.h"

#include "platform/UnicodeText.h"

#include <optional>

namespace pelmora::platform::players {

namespace {

bool isShown(char32_t code) {
  const auto isIn = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
  if (code < 0x20 || isIn(0x7F, 0x9F)) return false;               // controls
  if (isIn(0x2028, 0x2029)) return false;                          // line and paragraph separators
  if (isIn(0x200E, 0x200F) || code == 0x61C) return false;         // marks of direction
  if (isIn(0x202A, 0x202E) || isIn(0x2066, 0x2069)) return false;  // embeddings and overrides
  return true;
}

}  // namespace

std::string trackText(std::string_view bytes) {
  std::string text;
  std::size_t count = 0;
  for (std::size_t at = 0; at < bytes.size() && count < kLongestTrackText;) {
    const std::size_t before = at;
    const std::optional<char32_t> code = plist::nextCodePoint(bytes, at);
    if (!code) at = before + 1;
    if (!code || !isShown(*code) || (text.empty() && *code == ' ')) continue;
    plist::appendUtf8(*code, text);
    ++count;
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

}  // namespace pelmora::platform::players
