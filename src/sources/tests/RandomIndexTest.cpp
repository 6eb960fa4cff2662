#include "sources/RandomIndex.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <vector>

namespace pelmora::sources {

TEST(RandomIndex, drawsInSinglePrecision) {
  srandom(7);
  std::vector<float> fractions(100);
  for (float& fraction : fractions) fraction = static_cast<float>(random()) / 2147483648.0F;
  srandom(7);
  for (const float fraction : fractions) {
    EXPECT_EQ(randomIndexBetween(5, 104), 5 + static_cast<std::uint64_t>(100.0F * fraction));
  }
}

TEST(RandomIndex, reachesBothEndsAndNothingElse) {
  srandom(1);
  std::vector<int> hits(4, 0);
  for (int i = 0; i < 400; ++i) ++hits.at(randomIndexBetween(0, 3));
  for (const int count : hits) EXPECT_GT(count, 50);
}

TEST(RandomIndex, givesTheLowEndForTheHighestDraws) {
  constexpr unsigned kSeedOfAHighDraw = 22100322;  // its first draw is 1 in single precision
  srandom(kSeedOfAHighDraw);
  EXPECT_EQ(randomIndexBetween(3, 12), 3U);
}

TEST(RandomIndex, givesTheLowEndOfAnEmptyRange) {
  EXPECT_EQ(randomIndexBetween(0, std::numeric_limits<std::uint64_t>::max()), 0U);
  EXPECT_EQ(randomIndexBetween(7, 6), 7U);
}

TEST(RandomIndex, takesOneDrawEvenForAnEmptyRange) {
  srandom(3);
  random();
  const long second = random();
  srandom(3);
  (void)randomIndexBetween(0, std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(random(), second);
}

TEST(RandomIndex, isCoarseAboveTwentyFourBits) {
  srandom(11);
  // A fraction below one has at most 31 bits, so the 9 last of a range of 2^40 are never drawn.
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(randomIndexBetween(0, (1ULL << 40) - 1) % (1ULL << 9), 0U);
  }
}

TEST(RandomIndex, staysDefinedForTheWidestRange) {
  srandom(22100322);  // the highest draw: single precision gives 2^64, which no integer holds
  EXPECT_EQ(randomIndexBetween(0, std::numeric_limits<std::uint64_t>::max() - 1), 0U);
}

}  // namespace pelmora::sources
