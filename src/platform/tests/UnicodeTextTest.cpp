#include "platform/UnicodeText.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

std::vector<std::uint8_t> utf16(std::string_view text) {
  std::vector<std::uint8_t> bytes;
  appendUtf16(text, bytes);
  return bytes;
}

std::optional<std::string> utf8(std::vector<std::uint8_t> bytes) { return utf8FromUtf16(bytes); }

}  // namespace

TEST(UnicodeText, tellsAsciiAtEveryPosition) {
  EXPECT_TRUE(isAscii(""));
  for (std::size_t length = 1; length < 20; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string text(length, 'a');
      EXPECT_TRUE(isAscii(text));
      text[at] = '\x80';
      EXPECT_FALSE(isAscii(text)) << at << " of " << length;
    }
  }
}

TEST(UnicodeText, acceptsEveryKindOfSequence) {
  EXPECT_TRUE(isUtf8("a\xC2\x80 \xDF\xBF \xE0\xA0\x80 \xED\x9F\xBF \xEE\x80\x80 \xF4\x8F\xBF\xBF"));
}

TEST(UnicodeText, refusesWhatIsNoUtf8) {
  for (const char* const wrong :
       {"\x80", "\xC3", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xED\xA0\x80", "\xED\xBF\xBF",
        "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xE2\x82",
        "caf\xE9"}) {
    EXPECT_FALSE(isUtf8(wrong)) << testing::PrintToString(std::string(wrong));
  }
}

TEST(UnicodeText, stopsAtTheSequenceThatIsWrong) {
  const std::string_view text = "\xC3\xA9\xFF";
  std::size_t at = 0;
  EXPECT_EQ(nextCodePoint(text, at), U'é');
  EXPECT_EQ(at, 2U);
  EXPECT_EQ(nextCodePoint(text, at), std::nullopt);
  EXPECT_EQ(at, 2U);
}

TEST(UnicodeText, goesToUtf16AndBack) {
  const std::string text = "aé€📷";
  const std::vector<std::uint8_t> expected = {0, 'a', 0, 0xE9, 0x20, 0xAC, 0xD8, 0x3D, 0xDC, 0xF7};
  EXPECT_EQ(utf16(text), expected);
  EXPECT_EQ(utf8FromUtf16(expected), text);
}

TEST(UnicodeText, refusesUnpairedSurrogates) {
  EXPECT_EQ(utf8({0xD8, 0x3D}), std::nullopt);
  EXPECT_EQ(utf8({0xDC, 0xF7}), std::nullopt);
  EXPECT_EQ(utf8({0xD8, 0x3D, 0x00, 0x41}), std::nullopt);
  EXPECT_EQ(utf8({0xDC, 0xF7, 0xD8, 0x3D}), std::nullopt);
  EXPECT_EQ(utf8({0x00}), std::nullopt);
}

}  // namespace pelmora::plist
