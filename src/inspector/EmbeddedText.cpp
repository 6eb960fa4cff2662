#include "inspector/EmbeddedText.h"

#include "platform/metadata/FileMetadata.h"
#include "platform/PlainText.h"
#include "platform/UnicodeText.h"

#include <algorithm>
#include <cstdint>

namespace pelmora::inspector {

namespace {

using platform::metadata::kMaxTextBytes;

// What is looked at of a text: more than can be left of it.
constexpr std::size_t kEnough = 4 * kMaxTextBytes;
constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kByteOrderMark = 0xFEFF;

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// As much of UTF-8 as fits, cut between characters.
std::string_view cut(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && isContinuation(text[size])) --size;
  return text.substr(0, size);
}

/// A text of which there is more, or that has line breaks, is taken as one line.
std::string finished(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char each) { return each == '\n' || each == '\t'; }, ' ');
  return platform::plainText(text, kMaxTextBytes);
}

std::string utf8FromLatin1(std::string_view bytes) {
  std::string text;
  for (const char each : bytes) plist::appendUtf8(static_cast<unsigned char>(each), text);
  return text;
}

/// The code units of UTF-16.
class Units {
 public:
  Units(std::string_view bytes, ByteOrder order) : _bytes(bytes), _order(order) {
    if (count() > 0 && at(0) == 0xFFFE) {
      _order = order == ByteOrder::bigEndian ? ByteOrder::littleEndian : ByteOrder::bigEndian;
    }
  }

  [[nodiscard]] std::size_t count() const { return _bytes.size() / 2; }
  [[nodiscard]] char32_t at(std::size_t index) const {
    const auto first = static_cast<unsigned char>(_bytes[2 * index]);
    const auto second = static_cast<unsigned char>(_bytes[2 * index + 1]);
    const bool isBig = _order == ByteOrder::bigEndian;
    return static_cast<char32_t>(isBig ? first << 8 | second : second << 8 | first);
  }

 private:
  std::string_view _bytes;
  ByteOrder _order;
};

bool isHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

std::string textFromBytes(std::string_view bytes, Otherwise otherwise) {
  bytes = cut(bytes.substr(0, bytes.find('\0')), kEnough);
  if (otherwise == Otherwise::replaced || plist::isUtf8(bytes)) return finished(std::string(bytes));
  return finished(utf8FromLatin1(bytes));
}

std::string textFromUtf16(std::string_view bytes, ByteOrder order) {
  const Units units(bytes.substr(0, kEnough), order);
  std::string text;
  for (std::size_t i = 0; i < units.count() && units.at(i) != 0; ++i) {
    char32_t code = units.at(i);
    if (isHigh(code) && i + 1 < units.count() && isLow(units.at(i + 1))) {
      code = 0x10000 + ((code - 0xD800) << 10) + (units.at(++i) - 0xDC00);
    } else if (isHigh(code) || isLow(code)) {
      code = kReplacement;
    }
    if (code != kByteOrderMark) plist::appendUtf8(code, text);
  }
  return finished(std::move(text));
}

std::string textFromComment(std::string_view bytes, ByteOrder order) {
  constexpr std::size_t kNameBytes = 8;
  if (bytes.size() < kNameBytes) return textFromBytes(bytes);
  const std::string_view name = bytes.substr(0, kNameBytes);
  if (name.starts_with("UNICODE")) return textFromUtf16(bytes.substr(kNameBytes), order);
  // Japanese by its own standard is left out: there is no telling what it would become.
  if (name.starts_with("JIS")) return {};
  return textFromBytes(bytes.substr(kNameBytes));
}

}  // namespace pelmora::inspector
