#include "platform/predicate/FoldedText.h"

#include <gtest/gtest.h>

namespace pelmora::platform::predicate {

namespace {

constexpr Folding kNothing{};
constexpr Folding kCase{.ignoresCase = true};
constexpr Folding kDiacritics{.ignoresDiacritics = true};
constexpr Folding kBoth{.ignoresCase = true, .ignoresDiacritics = true};

}  // namespace

TEST(FoldedText, leavesATextAloneOfWhichEverythingMatters) {
  EXPECT_EQ(foldedText("Café \xFF", kNothing), "Café \xFF");
}

TEST(FoldedText, foldsCaseAlone) {
  EXPECT_EQ(foldedText("BEACH 2", kCase), "beach 2");
  EXPECT_EQ(foldedText("CAFÉ", kCase), "café");
  EXPECT_EQ(foldedText("ΣΊΣΥΦΟΣ", kCase), foldedText("Σίσυφος", kCase));
}

TEST(FoldedText, foldsOneLetterToSeveral) {
  EXPECT_EQ(foldedText("Straße", kCase), foldedText("STRASSE", kCase));
  EXPECT_EQ(foldedText("ẞ", kCase), "ss");
}

TEST(FoldedText, knowsNoLocale) {
  EXPECT_EQ(foldedText("TITLE", kCase), "title");
  EXPECT_NE(foldedText("İ", kCase), "i");
  EXPECT_EQ(foldedText("İ", kBoth), "i");
}

TEST(FoldedText, dropsDiacriticsAlone) {
  EXPECT_EQ(foldedText("Élan Ångström", kDiacritics), "Elan Angstrom");
  EXPECT_EQ(foldedText("e\u0301", kDiacritics), "e");
  EXPECT_EQ(foldedText("Beach", kDiacritics), "Beach");
}

TEST(FoldedText, dropsNoVowelsThatTakeSpace) { EXPECT_EQ(foldedText("का", kDiacritics), "का"); }

TEST(FoldedText, foldsWhatDecomposesIntoCapitals) {
  EXPECT_EQ(foldedText("ℌÅ", kBoth), "ha");
  EXPECT_EQ(foldedText("ﬁn²", kBoth), "fin2");
}

TEST(FoldedText, isFoldedOnceAndForAll) {
  for (const char* const text : {"İ", "ẞ", "ᾼ", "ǰ", "ŉ", "㎒", "ϔ", "Ώ", "ΐ", "가", "ǅ"}) {
    for (const Folding folding : {kCase, kDiacritics, kBoth}) {
      const std::string once = foldedText(text, folding);
      EXPECT_EQ(foldedText(once, folding), once) << text;
    }
  }
}

TEST(FoldedText, replacesWhatIsNotUtf8) {
  EXPECT_EQ(foldedText("A\xFF", kCase), "a\uFFFD");
  EXPECT_EQ(foldedText("\xC3", kBoth), "\uFFFD");
}

TEST(FoldedText, keepsZeros) {
  EXPECT_EQ(foldedText(std::string_view("É\0A", 4), kBoth), std::string("e\0a", 3));
  EXPECT_EQ(foldedText("", kBoth), "");
}

}  // namespace pelmora::platform::predicate
