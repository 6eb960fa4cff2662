#include "platform/UnicodeText.h"

#include <algorithm>
#include <cstring>

namespace pelmora::plist {

namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t value) { return value >= 0xD800 && value <= 0xDFFF; }

/// The length of a sequence by its first byte; 0 for one that starts none.
std::size_t sequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return 0;
}

}  // namespace

bool isAscii(std::string_view bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + at, 8);
    if (word & kHighBits) return false;
  }
  return std::none_of(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end(),
                      [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

bool isUtf8(std::string_view bytes) {
  if (isAscii(bytes)) return true;
  for (std::size_t at = 0; at < bytes.size();) {
    if (!nextCodePoint(bytes, at)) return false;
  }
  return true;
}

std::optional<char32_t> nextCodePoint(std::string_view utf8, std::size_t& at) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  constexpr unsigned char kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  if (at >= utf8.size()) return std::nullopt;
  const auto first = static_cast<unsigned char>(utf8[at]);
  const std::size_t length = sequenceLength(first);
  if (length == 0 || length > utf8.size() - at) return std::nullopt;

  char32_t value = first & kFirstBits[length];
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(utf8[at + i]);
    if ((next & 0xC0) != 0x80) return std::nullopt;
    value = (value << 6) | (next & 0x3F);
  }
  if (value < kSmallest[length] || value > kLastCodePoint || isSurrogate(value)) {
    return std::nullopt;
  }
  at += length;
  return value;
}

void appendUtf8(char32_t codePoint, std::string& out) {
  const auto put = [&out](char32_t byte) {
    out += static_cast<char>(static_cast<unsigned char>(byte));
  };
  if (codePoint < 0x80) {
    put(codePoint);
  } else if (codePoint < 0x800) {
    put(0xC0 | (codePoint >> 6));
    put(0x80 | (codePoint & 0x3F));
  } else if (codePoint < 0x10000) {
    put(0xE0 | (codePoint >> 12));
    put(0x80 | ((codePoint >> 6) & 0x3F));
    put(0x80 | (codePoint & 0x3F));
  } else {
    put(0xF0 | (codePoint >> 18));
    put(0x80 | ((codePoint >> 12) & 0x3F));
    put(0x80 | ((codePoint >> 6) & 0x3F));
    put(0x80 | (codePoint & 0x3F));
  }
}

void appendUtf16(std::string_view utf8, std::vector<std::uint8_t>& out) {
  const auto put = [&out](char32_t unit) {
    out.push_back(static_cast<std::uint8_t>(unit >> 8));
    out.push_back(static_cast<std::uint8_t>(unit & 0xFF));
  };
  for (std::size_t at = 0; at < utf8.size();) {
    const std::optional<char32_t> codePoint = nextCodePoint(utf8, at);
    if (!codePoint) return;
    if (*codePoint < 0x10000) {
      put(*codePoint);
    } else {
      const char32_t rest = *codePoint - 0x10000;
      put(0xD800 | (rest >> 10));
      put(0xDC00 | (rest & 0x3FF));
    }
  }
}

std::optional<std::string> utf8FromUtf16(std::span<const std::uint8_t> bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  const auto unit = [bytes](std::size_t at) {
    return static_cast<char32_t>(bytes[at] << 8 | bytes[at + 1]);
  };
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    char32_t codePoint = unit(at);
    if (isSurrogate(codePoint)) {
      const bool leads = codePoint <= 0xDBFF;
      if (!leads || at + 4 > bytes.size()) return std::nullopt;
      const char32_t trail = unit(at + 2);
      if (trail < 0xDC00 || trail > 0xDFFF) return std::nullopt;
      codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (trail - 0xDC00);
      at += 2;
    }
    appendUtf8(codePoint, text);
  }
  return text;
}

}  // namespace pelmora::plist
