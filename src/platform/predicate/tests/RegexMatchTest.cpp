#include "platform/predicate/RegexMatch.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace pelmora::platform::predicate {

namespace {

constexpr Folding kPlain{};
constexpr Folding kCase{.ignoresCase = true};
constexpr Folding kDiacritics{.ignoresDiacritics = true};
constexpr Folding kBoth{.ignoresCase = true, .ignoresDiacritics = true};

/// Takes too many steps with a text of so many letters that does not end as it wants.
constexpr const char* kSlow = "(a+)+c";

std::string letters(std::size_t count) { return std::string(count, 'a'); }

}  // namespace

TEST(RegexMatch, matchesOneTextAfterTheOther) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(matchesRegex("IMG_0001.JPG", "IMG_\\d{4}\\.JPG", kPlain));
    EXPECT_FALSE(matchesRegex("IMG_0001.JPG2", "IMG_\\d{4}\\.JPG", kPlain));
    EXPECT_FALSE(matchesRegex("", "IMG_\\d{4}\\.JPG", kPlain));
    EXPECT_TRUE(matchesRegex("IMG_0002.JPG", "IMG_\\d{4}\\.JPG", kPlain));
  }
}

TEST(RegexMatch, takesTheSameExpressionByEachFoldingInItsOwnWay) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_FALSE(matchesRegex("ÉTÉ", "été", kPlain));
    EXPECT_TRUE(matchesRegex("ÉTÉ", "été", kCase));
    EXPECT_FALSE(matchesRegex("ÉTÉ", "été", kDiacritics));
    EXPECT_TRUE(matchesRegex("ETE", "été", kBoth));
    EXPECT_TRUE(matchesRegex("ete", "été", kDiacritics));
    EXPECT_FALSE(matchesRegex("ete", "été", kCase));
  }
}

TEST(RegexMatch, tellsExpressionsApartHoweverManyThereAre) {
  std::vector<std::string> expressions;
  for (int i = 0; i < 30; ++i) expressions.push_back("x+" + std::to_string(i));
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < expressions.size(); ++i) {
      EXPECT_TRUE(matchesRegex("xx" + std::to_string(i), expressions[i], kPlain));
      EXPECT_FALSE(matchesRegex("xx" + std::to_string(i + 1), expressions[i], kPlain));
      EXPECT_TRUE(matchesRegex("xx0", expressions[0], kPlain));
    }
  }
}

TEST(RegexMatch, doesNotTakeAnExpressionForAnotherThatBeginsLikeIt) {
  EXPECT_TRUE(matchesRegex("ab", "ab", kPlain));
  EXPECT_FALSE(matchesRegex("ab", "a", kPlain));
  EXPECT_TRUE(matchesRegex("ab", std::string("ab\0?", 4), kPlain));
  EXPECT_TRUE(matchesRegex("ab", "ab", kPlain));
}

TEST(RegexMatch, staysWithAnInvalidExpressionAndMatchesOthersBesideIt) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_FALSE(matchesRegex("(", "(", kPlain));
    EXPECT_TRUE(matchesRegex("(", "\\(", kPlain));
  }
}

TEST(RegexMatch, allowsEveryTextTheSameNumberOfSteps) {
  EXPECT_FALSE(matchesRegex(letters(64), kSlow, kPlain));
  EXPECT_TRUE(matchesRegex("aac", kSlow, kPlain));
  EXPECT_FALSE(matchesRegex(letters(64), kSlow, kPlain));
  // Each takes a part of what is allowed, and all of them far more.
  const std::string expression = "(a+)+b|a+c";
  for (int i = 0; i < 40; ++i) EXPECT_TRUE(matchesRegex(letters(11) + "c", expression, kPlain));
  EXPECT_FALSE(matchesRegex(letters(40) + "c", expression, kPlain));
}

TEST(RegexMatch, goesOnAfterATextThatTakesTooMuchMemory) {
  const std::string expression = "(a|b|ab)*c";
  EXPECT_FALSE(matchesRegex(letters(1 << 16) + "c", expression, kPlain));
  EXPECT_TRUE(matchesRegex("ababc", expression, kPlain));
  EXPECT_FALSE(matchesRegex("abab", expression, kPlain));
}

TEST(RegexMatch, measuresExpressionsAsTheyAreFolded) {
  EXPECT_TRUE(matchesRegex(letters(1000), letters(1000), kPlain));
  EXPECT_FALSE(matchesRegex(letters(1001), letters(1001), kPlain));
  // One character that becomes eighteen.
  const std::string honorific = "\uFDFA";
  std::string many;
  for (int i = 0; i < 100; ++i) many += honorific;
  EXPECT_TRUE(matchesRegex(honorific, honorific, kDiacritics));
  EXPECT_FALSE(matchesRegex(many, many, kDiacritics));
  EXPECT_TRUE(matchesRegex(many, many, kPlain));
}

TEST(RegexMatch, keepsExpressionsForEachThreadByItself) {
  // The library makes its tables with the first expression, in a way that sanitizers cannot see.
  EXPECT_TRUE(matchesRegex("x", "x", kCase));
  std::vector<std::thread> threads;
  std::vector<int> counts(4);
  for (std::size_t i = 0; i < counts.size(); ++i) {
    threads.emplace_back([i, &counts] {
      for (int n = 0; n < 200; ++n) {
        const std::string text = "x" + std::to_string(n % 10);
        counts[i] += matchesRegex(text, "x" + std::to_string((n + 1) % 10) + "|x5", kCase) ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counts, std::vector<int>(4, 20));
}

}  // namespace pelmora::platform::predicate
