#include "platform/PrintableLine.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

using namespace std::string_view_literals;

TEST(PrintableLine, leavesTextAsItIs) {
  for (const std::string_view text :
       {""sv, "Pelmora: /p/100%s.jpg"sv, "Grüße \\ ~"sv, "東京 😀 \u00A0é"sv, "\U0010FFFD"sv}) {
    EXPECT_EQ(printableLine(text), text);
  }
}

TEST(PrintableLine, keepsControlCharactersOnOneLine) {
  EXPECT_EQ(printableLine("a\nb\r\n"), R"(a\x0Ab\x0D\x0A)");
  EXPECT_EQ(printableLine("\x1B[31mred\x07\t\x7F"), R"(\x1B[31mred\x07\x09\x7F)");
  EXPECT_EQ(printableLine("nul\0!"sv), R"(nul\x00!)");
  EXPECT_EQ(printableLine("\u0085\u009B"), R"(\xC2\x85\xC2\x9B)");
}

TEST(PrintableLine, letsNoNameEndTheLineOrTurnItAround) {
  EXPECT_EQ(printableLine("\u2028"), R"(\xE2\x80\xA8)");
  EXPECT_EQ(printableLine("\u202Egpj"), R"(\xE2\x80\xAEgpj)");
  EXPECT_EQ(printableLine("\u200F\u2066\u061C"), R"(\xE2\x80\x8F\xE2\x81\xA6\xD8\x9C)");
}

TEST(PrintableLine, showsBytesThatAreNoUtf8) {
  EXPECT_EQ(printableLine("caf\xE9.jpg"), R"(caf\xE9.jpg)");
  EXPECT_EQ(printableLine("\x80\xBF"), R"(\x80\xBF)");
  EXPECT_EQ(printableLine("\xFF\xFE"), R"(\xFF\xFE)");
  EXPECT_EQ(printableLine("\xC0\xAF"), R"(\xC0\xAF)");                  // too long a form of "/"
  EXPECT_EQ(printableLine("\xE0\x80\xAF"), R"(\xE0\x80\xAF)");          // the same in three
  EXPECT_EQ(printableLine("\xF0\x80\x80\xAF"), R"(\xF0\x80\x80\xAF)");  // and in four
  EXPECT_EQ(printableLine("\xED\xA0\x80"), R"(\xED\xA0\x80)");          // half a surrogate pair
  EXPECT_EQ(printableLine("\xF4\x90\x80\x80"), R"(\xF4\x90\x80\x80)");  // beyond Unicode
  EXPECT_EQ(printableLine("\xF5"), R"(\xF5)");
}

TEST(PrintableLine, showsACharacterThatIsCutShort) {
  EXPECT_EQ(printableLine("a\xE2\x82"), R"(a\xE2\x82)");
  EXPECT_EQ(printableLine("\xE2\x82z"), R"(\xE2\x82z)");
  EXPECT_EQ(printableLine("\xF0\x9F\x98"), R"(\xF0\x9F\x98)");
}

TEST(PrintableLine, cutsWhatIsTooLongBetweenCharacters) {
  const std::string fits(kLongestLine, 'x');
  EXPECT_EQ(printableLine(fits), fits);
  EXPECT_EQ(printableLine(fits + "x"), std::string(kLongestLine - 3, 'x') + "…");

  std::string wide(kLongestLine - 4, 'x');
  wide += "éé\n";
  EXPECT_EQ(printableLine(wide), std::string(kLongestLine - 4, 'x') + "…");

  const std::string longest(1'000'000, '\n');
  const std::string line = printableLine(longest);
  EXPECT_LE(line.size(), kLongestLine);
  EXPECT_TRUE(line.ends_with("\\x0A…"));
}

}  // namespace pelmora::platform
