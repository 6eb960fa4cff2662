#include "platform/predicate/FoldedPattern.h"

#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

constexpr Folding kNothing{};
constexpr Folding kCase{.ignoresCase = true};
constexpr Folding kBoth{.ignoresCase = true, .ignoresDiacritics = true};

constexpr char32_t kMany = kAnyCharacters;
constexpr char32_t kOne = kAnyCharacter;

}  // namespace

TEST(FoldedPattern, findsTheWildcardsOfLike) {
  EXPECT_EQ(foldedLikePattern("", kNothing), U"");
  EXPECT_EQ(foldedLikePattern("a*b?", kNothing), (LikePattern{U'a', kMany, U'b', kOne}));
  EXPECT_EQ(foldedLikePattern("**?", kNothing), (LikePattern{kMany, kMany, kOne}));
}

TEST(FoldedPattern, makesWildcardsPlainThatHaveABackslash) {
  EXPECT_EQ(foldedLikePattern("\\*\\?\\\\*", kNothing), (LikePattern{U'*', U'?', U'\\', kMany}));
  EXPECT_EQ(foldedLikePattern("\\a\\", kNothing), U"\\a\\");
}

TEST(FoldedPattern, foldsWhatIsPlain) {
  EXPECT_EQ(foldedLikePattern("CAFÉ*ß", kCase), (LikePattern(U"café") + kMany + U"ss"));
  EXPECT_EQ(foldedLikePattern("CAFÉ?E\u0301", kBoth), (LikePattern(U"cafe") + kOne + U"e"));
}

TEST(FoldedPattern, findsNoWildcardInWhatFoldsIntoOne) {
  EXPECT_EQ(foldedLikePattern("＊？＼*", kBoth), (LikePattern(U"*?\\") + kMany));
}

TEST(FoldedPattern, saysOfFoldedTextsWhatItSaidBefore) {
  EXPECT_EQ(foldedLikeText("CAFÉ*ß?", kBoth), "cafe*ss?");
  EXPECT_EQ(foldedLikeText("\\*＊\\？\\\\a\\", kBoth), "\\*\\*\\\\\\?\\\\a\\\\");
  for (const char* const pattern :
       {"", "*", "É\\*＊?", "＼*", "\\＼", "a\\", "\xFF*", "\\?？", "ﷺ*"}) {
    EXPECT_EQ(foldedLikePattern(foldedLikeText(pattern, kBoth), kNothing),
              foldedLikePattern(pattern, kBoth))
        << pattern;
  }
}

TEST(FoldedPattern, takesWhatIsNotUtf8ByteByByte) {
  EXPECT_EQ(foldedLikePattern("\xFF*", kNothing), (LikePattern{0xFF, kMany}));
  EXPECT_EQ(foldedLikePattern("\xFF*", kBoth), (LikePattern{0xFFFD, kMany}));
}

TEST(FoldedPattern, takesDiacriticsFromTheCharactersOfAnExpression) {
  EXPECT_EQ(regexWithoutDiacritics("(É|e\u0301)+\\d{2}"), "(E|e)+\\d{2}");
  EXPECT_EQ(regexWithoutDiacritics("[à-ü]"), "[a-u]");
  EXPECT_EQ(regexWithoutDiacritics("\\\\É\\É"), "\\\\EE");
  EXPECT_EQ(regexWithoutDiacritics("É\xFF"), "E\uFFFD");
}

TEST(FoldedPattern, makesPlainWhatFoldsIntoTheSyntaxOfExpressions) {
  EXPECT_EQ(regexWithoutDiacritics("a＊"), "a\\x{2A}");
  EXPECT_EQ(regexWithoutDiacritics("\\＊"), "\\x{2A}");
  EXPECT_EQ(regexWithoutDiacritics("\\ｄ"), "d");
  EXPECT_EQ(regexWithoutDiacritics("[］]"), "[\\x{5D}]");
}

TEST(FoldedPattern, keepsTogetherWhatACharacterFoldsInto) {
  EXPECT_EQ(regexWithoutDiacritics("ﬁ+"), "(?:fi)+");
  EXPECT_EQ(regexWithoutDiacritics("[ﬁ]ﬁ"), "[fi](?:fi)");
  EXPECT_EQ(regexWithoutDiacritics("[^]ﬁ[ﬁ]ﬁ]ﬁ"), "[^]fi[fi]fi](?:fi)");
  EXPECT_EQ(regexWithoutDiacritics("]ﬁ\\[ﬁ"), "](?:fi)\\[(?:fi)");
}

TEST(FoldedPattern, makesPlainWhatIsQuotedInAnExpression) {
  EXPECT_EQ(regexWithoutDiacritics("\\Qa.É＼Ｅ\\E.É"), "a\\x{2E}E\\x{5C}E.E");
  EXPECT_EQ(regexWithoutDiacritics("É\\Q"), "E");
  EXPECT_EQ(regexWithoutDiacritics("É\\"), "E\\");
}

TEST(FoldedPattern, leavesAnExpressionOfAsciiAlone) {
  EXPECT_EQ(regexWithoutDiacritics("\\Qa.\\E[b"), "\\Qa.\\E[b");
}

}  // namespace pelmora::platform::predicate
