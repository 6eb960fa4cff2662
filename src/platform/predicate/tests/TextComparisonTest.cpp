#include "platform/predicate/TextComparison.h"

#include "platform/UnicodeText.h"

#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

constexpr auto kBoth = kAllOptions;

bool isLike(std::string_view text, std::string_view pattern, unsigned options = 0) {
  return textSatisfies(Operator::like, text, pattern, options);
}

bool matches(std::string_view text, std::string_view expression, unsigned options = 0) {
  return textSatisfies(Operator::matches, text, expression, options);
}

}  // namespace

TEST(TextComparison, comparesCodePoints) {
  EXPECT_TRUE(textSatisfies(Operator::equal, "beach", "beach", 0));
  EXPECT_FALSE(textSatisfies(Operator::equal, "beach", "Beach", 0));
  EXPECT_FALSE(textSatisfies(Operator::equal, "é", "e\u0301", 0));
  EXPECT_TRUE(textSatisfies(Operator::notEqual, "a", "b", 0));
  EXPECT_FALSE(textSatisfies(Operator::notEqual, "a", "A", kCaseInsensitive));
}

TEST(TextComparison, foldsByTheOptions) {
  EXPECT_TRUE(textSatisfies(Operator::equal, "STRASSE", "straße", kCaseInsensitive));
  EXPECT_FALSE(textSatisfies(Operator::equal, "CAFE", "café", kCaseInsensitive));
  EXPECT_TRUE(textSatisfies(Operator::equal, "cafe", "café", kDiacriticInsensitive));
  EXPECT_FALSE(textSatisfies(Operator::equal, "CAFE", "café", kDiacriticInsensitive));
  EXPECT_TRUE(textSatisfies(Operator::equal, "CAFE", "café", kBoth));
}

TEST(TextComparison, ordersByCodePoint) {
  EXPECT_TRUE(textSatisfies(Operator::lessThan, "Z", "a", 0));
  EXPECT_FALSE(textSatisfies(Operator::lessThan, "Z", "a", kCaseInsensitive));
  EXPECT_TRUE(textSatisfies(Operator::lessThan, "\uFFFD", "\U00010000", 0));
  EXPECT_TRUE(textSatisfies(Operator::lessThanOrEqual, "a", "a", 0));
  EXPECT_FALSE(textSatisfies(Operator::lessThan, "a", "a", 0));
  EXPECT_TRUE(textSatisfies(Operator::greaterThan, "ab", "a", 0));
  EXPECT_TRUE(textSatisfies(Operator::greaterThanOrEqual, "ab", "ab", 0));
}

TEST(TextComparison, looksAtTheBeginningTheEndAndBetween) {
  EXPECT_TRUE(textSatisfies(Operator::beginsWith, "Beach.jpg", "beach", kBoth));
  EXPECT_FALSE(textSatisfies(Operator::beginsWith, "My beach", "beach", kBoth));
  EXPECT_TRUE(textSatisfies(Operator::endsWith, "Beach.JPG", ".jpg", kBoth));
  EXPECT_FALSE(textSatisfies(Operator::endsWith, ".jpg.png", ".jpg", kBoth));
  EXPECT_TRUE(textSatisfies(Operator::contains, "My Beach 2", "beach", kBoth));
  EXPECT_FALSE(textSatisfies(Operator::contains, "beach", "My beach", kBoth));
  EXPECT_TRUE(textSatisfies(Operator::in, "beach", "My Beach 2", kBoth));
}

TEST(TextComparison, findsAnEmptyTextEverywhere) {
  for (const Operator type : {Operator::beginsWith, Operator::endsWith, Operator::contains}) {
    EXPECT_TRUE(textSatisfies(type, "beach", "", 0));
  }
}

TEST(TextComparison, knowsNeitherSelectorsNorRanges) {
  EXPECT_FALSE(textSatisfies(Operator::customSelector, "a", "a", 0));
  EXPECT_FALSE(textSatisfies(Operator::between, "a", "a", 0));
  EXPECT_FALSE(textSatisfies(static_cast<Operator>(2000), "a", "a", 0));
}

TEST(TextComparison, likeComparesTheWholeText) {
  EXPECT_TRUE(isLike("beach", "beach"));
  EXPECT_FALSE(isLike("beach", "bea"));
  EXPECT_FALSE(isLike("bea", "beach"));
  EXPECT_TRUE(isLike("", ""));
  EXPECT_FALSE(isLike("", "?"));
}

TEST(TextComparison, likeTakesAStarForAnyCharacters) {
  for (const char* const pattern :
       {"*", "b*", "*h", "b*h", "*ea*", "**", "be*ach", "*b*e*a*c*h*"}) {
    EXPECT_TRUE(isLike("beach", pattern)) << pattern;
  }
  EXPECT_FALSE(isLike("beach", "*x*"));
  EXPECT_FALSE(isLike("beach", "b*x"));
  EXPECT_TRUE(isLike("", "*"));
  EXPECT_TRUE(isLike("aab.aab.jpg", "*aab.jpg"));
}

TEST(TextComparison, likeTakesAQuestionMarkForOneCharacter) {
  EXPECT_TRUE(isLike("beach", "b?ach"));
  EXPECT_FALSE(isLike("bach", "b?ach"));
  EXPECT_TRUE(isLike("é", "?"));
  EXPECT_TRUE(isLike("📷", "?"));
  EXPECT_FALSE(isLike("e\u0301", "?"));
  EXPECT_TRUE(isLike("e\u0301", "?", kDiacriticInsensitive));
}

TEST(TextComparison, likeTakesPlainlyWhatHasABackslash) {
  EXPECT_TRUE(isLike("2*3", "2\\*3"));
  EXPECT_FALSE(isLike("2x3", "2\\*3"));
  EXPECT_TRUE(isLike("why?", "why\\?"));
  EXPECT_TRUE(isLike("a\\b", "a\\\\b"));
  EXPECT_TRUE(isLike("a\\b", "a\\b"));
  EXPECT_TRUE(isLike("a\\", "a\\"));
}

TEST(TextComparison, likeFoldsByTheOptions) {
  EXPECT_FALSE(isLike("Été 1", "ete*"));
  EXPECT_TRUE(isLike("Été 1", "ete*", kBoth));
}

TEST(TextComparison, likeTakesPlainlyWhatFoldsIntoAWildcard) {
  for (const unsigned options : {unsigned{kDiacriticInsensitive}, unsigned{kBoth}}) {
    EXPECT_FALSE(isLike("beach", "＊", options));
    EXPECT_FALSE(isLike("b", "？", options));
    EXPECT_TRUE(isLike("2＊3", "2\\*3", options));
    EXPECT_TRUE(isLike("2*3", "2＊3", options));
    EXPECT_TRUE(isLike("why？", "why？", options));
    EXPECT_TRUE(isLike("\\x", "＼?", options));
    EXPECT_TRUE(isLike("＊x", "?x", options));
  }
}

TEST(TextComparison, likeTakesWhatIsNotUtf8ByteByByte) {
  EXPECT_TRUE(isLike("\xFF\xFE", "??"));
  EXPECT_TRUE(isLike("a\xFF", "a\xFF"));
}

TEST(TextComparison, likeIsNotLongOverManyStars) {
  std::string pattern;
  for (int i = 0; i < 200; ++i) pattern += "*a";
  EXPECT_FALSE(isLike(std::string(2000, 'a'), pattern + "b"));
}

TEST(TextComparison, matchesTheWholeTextWithAnExpression) {
  EXPECT_TRUE(matches("IMG_1234.jpg", "IMG_\\d{4}\\.jpg"));
  EXPECT_FALSE(matches("xIMG_1234.jpg", "IMG_\\d{4}\\.jpg"));
  EXPECT_FALSE(matches("IMG_1234.jpgx", "IMG_\\d{4}\\.jpg"));
  EXPECT_TRUE(matches("Wörter", "\\p{L}+"));
}

TEST(TextComparison, matchesByTheOptions) {
  EXPECT_FALSE(matches("BEACH", "beach"));
  EXPECT_TRUE(matches("BEACH", "beach", kCaseInsensitive));
  EXPECT_TRUE(matches("ÉTÉ", "[eé]t.", kBoth));
  EXPECT_FALSE(matches("12", "\\D+", kBoth));
}

TEST(TextComparison, matchesPlainlyWhatFoldsIntoSyntax) {
  for (const unsigned options : {unsigned{kDiacriticInsensitive}, unsigned{kBoth}}) {
    EXPECT_FALSE(matches("bbb", "b＊", options));
    EXPECT_TRUE(matches("b*", "b＊", options));
    EXPECT_TRUE(matches("b＊", "b\\*", options));
    EXPECT_TRUE(matches("2(x)", "\\d（é?x）", options));
    EXPECT_TRUE(matches("］", "[a］]", options));
  }
}

TEST(TextComparison, takesEveryWideFormPlainly) {
  for (char32_t wide = 0xFF01; wide <= 0xFF5E; ++wide) {
    std::string text;
    plist::appendUtf8(wide, text);
    const std::string narrow(1, static_cast<char>(wide - 0xFF01 + '!'));
    EXPECT_TRUE(isLike(narrow, text, kDiacriticInsensitive)) << text;
    EXPECT_TRUE(matches(narrow, text, kDiacriticInsensitive)) << text;
    EXPECT_TRUE(matches(narrow, "[" + text + "]", kDiacriticInsensitive)) << text;
    EXPECT_TRUE(matches(text, "\\" + text, kDiacriticInsensitive)) << text;
    EXPECT_TRUE(matches(text, "\\Q" + text + "\\E", kDiacriticInsensitive)) << text;
  }
}

TEST(TextComparison, matchesNothingWithAnInvalidExpression) {
  for (const char* const expression : {"(", "[a", "a{2", "*", "\\", "(?<n>a)\\k<m>", "\xFF("}) {
    EXPECT_FALSE(matches("a", expression)) << expression;
  }
}

TEST(TextComparison, matchesNothingWithAnExpressionThatTakesTooLong) {
  EXPECT_FALSE(matches(std::string(64, 'a') + "b", "(a+)+c"));
  EXPECT_FALSE(matches(std::string(1 << 16, 'a'), "(a|b|ab)*c"));
  EXPECT_FALSE(matches("a", std::string(1001, 'a') + "*"));
}

}  // namespace pelmora::platform::predicate
