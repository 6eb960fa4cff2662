#include "sources/ScreenIndexAdditions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace pelmora::sources {

TEST(ScreenIndexAdditions, includesEveryScreenWithoutNumbers) {
  for (const std::uint64_t index : {0ULL, 1ULL, 9ULL, 10ULL, 112ULL}) {
    EXPECT_TRUE(includesScreenIndex("", index)) << index;
  }
  EXPECT_TRUE(includesScreenIndex("", std::numeric_limits<std::uint64_t>::max()));
}

TEST(ScreenIndexAdditions, includesIndexZeroAlways) {
  EXPECT_TRUE(includesScreenIndex("2", 0));
  EXPECT_TRUE(includesScreenIndex("nonsense", 0));
}

TEST(ScreenIndexAdditions, looksForSmallNumbersAsADigitAnywhere) {
  EXPECT_TRUE(includesScreenIndex("12", 1));
  EXPECT_TRUE(includesScreenIndex("12", 2));
  EXPECT_TRUE(includesScreenIndex("10", 1));
  EXPECT_TRUE(includesScreenIndex("1,3", 3));
  EXPECT_FALSE(includesScreenIndex("1,3", 2));
  EXPECT_FALSE(includesScreenIndex("12", 9));
}

TEST(ScreenIndexAdditions, looksForLargeNumbersAsAWholePiece) {
  EXPECT_TRUE(includesScreenIndex("12", 12));
  EXPECT_FALSE(includesScreenIndex("112", 12));
  EXPECT_TRUE(includesScreenIndex("1,12", 12));
  EXPECT_FALSE(includesScreenIndex("1, 12", 12));
  EXPECT_TRUE(includesScreenIndex("3,10", 10));
  EXPECT_FALSE(includesScreenIndex("3, 10", 10));
  EXPECT_FALSE(includesScreenIndex("3,110", 10));
  EXPECT_TRUE(includesScreenIndex("10,3", 10));
  EXPECT_FALSE(includesScreenIndex(",", 10));
}

TEST(ScreenIndexAdditions, ordersNumbersByTheirValue) {
  EXPECT_TRUE(numericCompare("2", "10") < 0);
  EXPECT_TRUE(numericCompare("10", "2") > 0);
  EXPECT_TRUE(numericCompare("10", "10") == 0);
  EXPECT_TRUE(numericCompare("", "1") < 0);
  EXPECT_TRUE(numericCompare("1", "1,2") < 0);
  EXPECT_TRUE(numericCompare("1,2", "1,10") < 0);
  EXPECT_TRUE(numericCompare("screen 9", "screen 10") < 0);
  EXPECT_TRUE(numericCompare("b1", "a2") > 0);
}

TEST(ScreenIndexAdditions, comparesNumbersOfAnyLength) {
  const std::string nines(60, '9');
  EXPECT_TRUE(numericCompare(nines, "1" + std::string(60, '0')) < 0);
  EXPECT_TRUE(numericCompare("0007", "7") == 0);
  EXPECT_TRUE(numericCompare("000", "0") == 0);
  EXPECT_TRUE(numericCompare("007a", "7b") < 0);
}

TEST(ScreenIndexAdditions, sortsScreenNumbers) {
  std::vector<std::string> numbers{"10", "2", "1", "21", "3"};
  std::sort(numbers.begin(), numbers.end(),
            [](const auto& left, const auto& right) { return numericCompare(left, right) < 0; });
  EXPECT_EQ(numbers, (std::vector<std::string>{"1", "2", "3", "10", "21"}));
}

}  // namespace pelmora::sources
