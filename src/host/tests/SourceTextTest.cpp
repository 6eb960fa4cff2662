#include "host/SourceText.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(SourceText, readsDaysByName) {
  EXPECT_EQ(*parseDays("sun,mon"), 3U);
  EXPECT_EQ(*parseDays("Saturday"), 64U);
  EXPECT_EQ(*parseDays("all"), 127U);
  EXPECT_EQ(*parseDays("none"), 0U);
  for (const char* bad : {"", "su", "sun,", "sun mon", "sundays"})
    EXPECT_FALSE(parseDays(bad)) << bad;
}

TEST(SourceText, readsScreensIntoTheStoredForm) {
  EXPECT_EQ(*parseScreens("1,3"), "1,3");
  EXPECT_EQ(*parseScreens("all"), "");
  for (const char* bad : {"0", "1,", "1, 2", "65", "x"}) EXPECT_FALSE(parseScreens(bad)) << bad;
}

TEST(SourceText, refusesChancesOutOfBounds) {
  EXPECT_EQ(*parseChance("0.001"), 0.001);
  EXPECT_EQ(*parseChance("100"), 100);
  for (const char* bad : {"0", "100.1", "-5", "half"}) EXPECT_FALSE(parseChance(bad)) << bad;
}

TEST(SourceText, writesWhatAPersonReads) {
  EXPECT_EQ(textOfDays(127), "every day");
  EXPECT_EQ(textOfDays(0), "no day");
  EXPECT_EQ(textOfDays(65), "sun,sat");
  EXPECT_EQ(textOfScreens(""), "all screens");
  EXPECT_EQ(textOfScreens("1,3"), "screens 1,3");
}

}  // namespace pelmora::host
