#include "platform/PlainText.h"

#include "platform/UnicodeText.h"

#include <algorithm>

namespace pelmora::platform {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

bool isControl(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// Most texts, with which there is nothing else to do.
bool isPrintableAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char each) { return each >= 0x20 && each < 0x7F; });
}

}  // namespace

std::string plainText(std::string_view bytes) {
  if (isPrintableAscii(bytes)) return std::string(trimmed(bytes));
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t before = at;
    const std::optional<char32_t> codePoint = plist::nextCodePoint(bytes, at);
    if (!codePoint) at = before + 1;
    const char32_t shown = codePoint.value_or(kReplacement);
    if (!isControl(shown)) plist::appendUtf8(shown, text);
  }
  return std::string(trimmed(text));
}

std::string plainText(std::string_view bytes, std::size_t mostBytes) {
  std::string text = plainText(bytes);
  if (text.size() <= mostBytes) return text;
  while (mostBytes > 0 && isContinuation(text[mostBytes])) --mostBytes;
  text.resize(mostBytes);
  return std::string(trimmed(text));
}

bool isPlainText(std::string_view text) {
  if (isPrintableAscii(text)) return trimmed(text).size() == text.size();
  return plainText(text) == text;
}

}  // namespace pelmora::platform
