#include "platform/PlainText.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(PlainText, leavesTextAlone) {
  EXPECT_EQ(plainText("Sea and sun"), "Sea and sun");
  EXPECT_EQ(plainText("\xC3\xA9t\xC3\xA9 \xE6\xB5\xB7 \xF0\x9F\x98\x80"),
            "\xC3\xA9t\xC3\xA9 \xE6\xB5\xB7 \xF0\x9F\x98\x80");
  EXPECT_EQ(plainText(""), "");
}

TEST(PlainText, replacesBytesThatAreNoText) {
  EXPECT_EQ(plainText("\xE9t\xE9"), "\xEF\xBF\xBDt\xEF\xBF\xBD");
  EXPECT_EQ(plainText("a\xC3"), "a\xEF\xBF\xBD");
}

TEST(PlainText, dropsControlCharacters) {
  EXPECT_EQ(plainText(std::string_view("a\0b\x1B[1m\x7F\xC2\x85"
                                       "c\n",
                                       12)),
            "ab[1mc");
}

TEST(PlainText, isCutBetweenCharacters) {
  EXPECT_EQ(plainText("abc", 3), "abc");
  EXPECT_EQ(plainText("abcd", 3), "abc");
  EXPECT_EQ(plainText("ab\xC3\xA9", 3), "ab");
  EXPECT_EQ(plainText("ab cd", 3), "ab");
  EXPECT_EQ(plainText("\xF0\x9F\x98\x80", 3), "");
}

TEST(PlainText, dropsBlanksAtItsEnds) {
  EXPECT_EQ(plainText("  a b \t\n"), "a b");
  EXPECT_EQ(plainText(" \t "), "");
}

TEST(PlainText, knowsATextThatIsPlainAlready) {
  for (const char* text : {"", "Sea and sun", "\xC3\xA9t\xC3\xA9"}) EXPECT_TRUE(isPlainText(text));
  for (const char* text : {" a", "a ", "a\nb", "\xE9", "\xC2\x85"}) EXPECT_FALSE(isPlainText(text));
}

}  // namespace pelmora::platform
