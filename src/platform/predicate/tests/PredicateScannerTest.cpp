#include "platform/predicate/PredicateScanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace pelmora::platform::predicate {

namespace {

using testing::ElementsAre;

std::vector<std::string> sources(std::string_view text) {
  PredicateScanner scanner(text);
  std::vector<std::string> sources;
  for (;;) {
    const Result<Token> token = scanner.next();
    if (!token) return {token.error().message};
    if (token->kind == Token::Kind::end) return sources;
    sources.emplace_back(token->source);
  }
}

Result<Token> first(std::string_view text) { return PredicateScanner(text).next(); }

std::string problem(std::string_view text) {
  const Result<Token> token = first(text);
  return token ? "none" : token.error().message;
}

}  // namespace

TEST(PredicateScanner, cutsAtSpacesAndSymbols) {
  EXPECT_THAT(
      sources("a.b CONTAINS[cd]\t\"x y\"\r\n&&(n>=-1)"),
      ElementsAre("a.b", "CONTAINS", "[", "cd", "]", "\"x y\"", "&&", "(", "n", ">=", "-1", ")"));
  EXPECT_THAT(sources("=<=>==<>!=!<=||{},"),
              ElementsAre("=<", "=>", "==", "<>", "!=", "!", "<=", "||", "{", "}", ","));
  EXPECT_THAT(sources("  "), ElementsAre());
}

TEST(PredicateScanner, stripsEscapesFromNames) {
  EXPECT_EQ(first("#and.#or_1")->text, "and.or_1");
  EXPECT_TRUE(first("#and")->isEscaped);
  EXPECT_FALSE(first("a.#and")->isEscaped);
  EXPECT_EQ(problem("#"), "expected a name at character 2");
  EXPECT_EQ(problem("a."), "expected a name at character 3");
  EXPECT_EQ(problem("a.1"), "expected a name at character 3");
}

TEST(PredicateScanner, readsWholeNumbers) {
  EXPECT_EQ(first("12")->integer, 12);
  EXPECT_EQ(first("-0")->integer, 0);
  EXPECT_EQ(first("0xFf")->integer, 255);
  EXPECT_EQ(first("-0x10")->integer, -16);
  EXPECT_EQ(first("0o17")->integer, 15);
  EXPECT_EQ(first("0B101")->integer, 5);
  EXPECT_EQ(first("-9223372036854775808")->integer, std::numeric_limits<std::int64_t>::min());
}

TEST(PredicateScanner, readsReals) {
  EXPECT_EQ(first("1.5")->real, 1.5);
  EXPECT_EQ(first("-.5")->real, -.5);
  EXPECT_EQ(first("9.2e-5")->real, 9.2e-5);
  EXPECT_EQ(first("1E+6")->real, 1e6);
  EXPECT_EQ(first("1.0")->kind, Token::Kind::real);
  EXPECT_EQ(first("1")->kind, Token::Kind::integer);
}

TEST(PredicateScanner, refusesWhatIsNoNumber) {
  for (const char* const text : {"12abc", "0x", "0xG", "0b2", "1.2.3", "1e", "1_000", "0x1.5"}) {
    EXPECT_EQ(problem(text), "expected a number at character 1") << text;
  }
  for (const char* const text : {"9223372036854775808", "0x8000000000000000", "1e999"}) {
    EXPECT_EQ(problem(text), "the number is too large or too small at character 1") << text;
  }
}

TEST(PredicateScanner, readsTextsWithTheirEscapes) {
  EXPECT_EQ(first(R"("a 'b' c")")->text, "a 'b' c");
  EXPECT_EQ(first(R"('a "b" c')")->text, "a \"b\" c");
  EXPECT_EQ(first(R"("\\\"\'\n\r\t\u00e9\uFFFD")")->text, "\\\"'\n\r\té\uFFFD");
  EXPECT_EQ(first(R"("\u0000")")->text, std::string(1, '\0'));
  EXPECT_EQ(first("\"\"")->text, "");
}

TEST(PredicateScanner, refusesEscapesThatItDoesNotKnow) {
  const std::string expected = R"(expected one of \\ \" \' \n \r \t \uXXXX at character )";
  EXPECT_EQ(problem(R"("\d")"), expected + "2");
  EXPECT_EQ(problem(R"("é\u12")"), expected + "3");
  EXPECT_EQ(problem(R"("\u-123")"), expected + "2");
  EXPECT_EQ(problem(R"("\uD800")"), expected + "2");
  EXPECT_EQ(problem("\"\\"), expected + "2");
}

TEST(PredicateScanner, refusesTextsWithoutEnd) {
  EXPECT_EQ(problem("  \"abc'"), "expected the end of the text that begins at character 3");
}

TEST(PredicateScanner, refusesCharactersThatMeanNothing) {
  EXPECT_EQ(problem(" é"), "'é' means nothing at character 2");
  EXPECT_EQ(problem("&"), "'&' means nothing at character 1");
  EXPECT_EQ(problem("- 1"), "'-' means nothing at character 1");
  EXPECT_EQ(problem("\xFF"), "the text is not UTF-8 at character 1");
}

TEST(PredicateScanner, countsPlacesInCharacters) {
  PredicateScanner scanner("éé📷x");
  EXPECT_EQ(scanner.place(8), " at character 4");
  EXPECT_EQ(scanner.place(9), " at character 5");
}

TEST(PredicateScanner, knowsPlainKeyPaths) {
  for (const char* const path : {"a", "_", "a.b", "kMDItemFSName", "a1.b_2"}) {
    EXPECT_TRUE(isPlainKeyPath(path)) << path;
  }
  for (const char* const path : {"", ".", "a.", ".a", "a..b", "1a", "a b", "é", "#a", "a-b"}) {
    EXPECT_FALSE(isPlainKeyPath(path)) << path;
  }
}

}  // namespace pelmora::platform::predicate
