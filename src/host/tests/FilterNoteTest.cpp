#include "host/FilterNote.h"

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

namespace pelmora::host {

namespace {

std::string noteOn(const char* text) {
  const auto predicate = platform::predicate::parsePredicate(text);
  EXPECT_TRUE(predicate) << text;
  return noteOnFilter(*predicate).value_or("");
}

}  // namespace

TEST(FilterNote, isNotNeededWhereTheSaverTakesAFilterAtItsWord) {
  for (const char* text :
       {"kMDItemFSName CONTAINS 'a'", "kMDItemCity == 'Oslo' OR kMDItemCity == 'Bergen'",
        "NOT (kMDItemCity == 'Oslo') AND kMDItemStarRating > 3",
        "kMDItemCity != 'Oslo' AND (kMDItemPixelWidth > 9 OR kMDItemFSName LIKE '*')"}) {
    EXPECT_EQ(noteOn(text), "") << text;
  }
}

TEST(FilterNote, tellsWhatTheSaverDoesNotUse) {
  for (const char* text : {"kMDItemStarRating > 3", "kMDItemFSName LIKE '*'", "TRUEPREDICATE",
                           "kMDItemPixelWidth > 9 AND kMDItemCity == 'Oslo'"}) {
    EXPECT_NE(noteOn(text).find("does not use this filter"), std::string::npos) << text;
  }
}

TEST(FilterNote, tellsWhatTheSaverTakesForNone) {
  for (const char* text : {"kMDItemFSName CONTAINS ''", "kMDItemStarRating == 5",
                           "NOT (kMDItemCity == '')", "kMDItemPixelWidth == kMDItemPixelHeight"}) {
    EXPECT_NE(noteOn(text).find("takes this filter for none"), std::string::npos) << text;
  }
}

TEST(FilterNote, tellsWhatTheSaverLooksThrough) {
  EXPECT_NE(noteOn("NOT kMDItemCity == 'Oslo'").find("looks through a NOT"), std::string::npos);
  EXPECT_NE(noteOn("NONE kMDItemKeywords == 'a'").find("looks through a NOT"), std::string::npos);
}

}  // namespace pelmora::host
