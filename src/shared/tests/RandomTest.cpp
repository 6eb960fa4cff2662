#include "shared/Random.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace pelmora {

TEST(Random, drawsADoubleFromOneResultOfRandom) {
  srandom(42);
  const double drawn = randomDoubleBetween(-35, 35);
  srandom(42);
  EXPECT_DOUBLE_EQ(drawn, -35 + 70.0 * static_cast<double>(random()) / 2147483647.0);
}

TEST(Random, drawsAnIntegerInSinglePrecision) {
  srandom(7);
  std::vector<int> drawn;
  for (int i = 0; i < 1000; ++i) drawn.push_back(randomIntBetween(1, 10));
  srandom(7);
  for (const int value : drawn) {
    const float fraction = static_cast<float>(random()) / 2147483648.0F;
    EXPECT_EQ(value, 1 + static_cast<int>(10 * fraction) % 10);
  }
}

TEST(Random, reachesEveryIntegerOfARange) {
  srandom(1);
  bool seen[6] = {};
  for (int i = 0; i < 1000; ++i) seen[randomIntBetween(0, 5)] = true;
  for (const bool each : seen) EXPECT_TRUE(each);
}

TEST(Random, walksAReversedRangeDownward) {
  srandom(3);
  std::vector<int> drawn;
  for (int i = 0; i < 1000; ++i) drawn.push_back(randomIntBetween(5, 2));
  srandom(3);
  for (const int value : drawn) {
    const float fraction = static_cast<float>(random()) / 2147483648.0F;
    EXPECT_EQ(value, 5 - static_cast<int>(4 * fraction) % 4);  // 5, 4, 3, 2
  }
}

TEST(Random, givesTheFirstEndForTheHighestDraws) {
  constexpr unsigned kSeedOfAHighDraw = 22100322;  // its first draw is 1 in single precision
  srandom(kSeedOfAHighDraw);
  EXPECT_EQ(randomIntBetween(3, 12), 3);
  srandom(kSeedOfAHighDraw);
  EXPECT_EQ(randomIntBetween(12, 3), 12);
}

TEST(Random, drawsXBeforeY) {
  srandom(9);
  const Point point = randomPointForSizeInRect({10, 20}, {{100, 200}, {110, 220}});
  srandom(9);
  EXPECT_DOUBLE_EQ(point.x, 100 + 100.0 * static_cast<double>(random()) / 2147483647.0);
  EXPECT_DOUBLE_EQ(point.y, 200 + 200.0 * static_cast<double>(random()) / 2147483647.0);
}

TEST(Random, placesABoxLargerThanTheRectangleBetweenTheReversedBounds) {
  srandom(5);
  for (int i = 0; i < 100; ++i) {
    const Point point = randomPointForSizeInRect({150, 10}, {{0, 0}, {100, 100}});
    EXPECT_GE(point.x, -50);
    EXPECT_LE(point.x, 0);
  }
}

TEST(Random, convertsAnglesBothWays) {
  EXPECT_DOUBLE_EQ(DegreesToRadians(180), kPi);
  EXPECT_DOUBLE_EQ(RadiansToDegrees(kPi / 2), 90);
}

}  // namespace pelmora
