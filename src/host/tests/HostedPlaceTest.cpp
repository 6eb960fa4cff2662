#include "host/HostedPlace.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::host {

namespace {

const std::vector<PixelRect> kTwo = {{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};

}  // namespace

TEST(HostedPlace, isTheDisplayThatTheWindowCovers) {
  EXPECT_EQ(placeOf(kTwo[0], kTwo), (HostedPlace{0, false}));
  EXPECT_EQ(placeOf(kTwo[1], kTwo), (HostedPlace{1, false}));
}

TEST(HostedPlace, isWhereMostOfTheWindowIs) {
  EXPECT_EQ(placeOf({1900, 10, 300, 200}, kTwo)->display, 1U);
  EXPECT_EQ(placeOf({1700, 10, 300, 200}, kTwo)->display, 0U);
  EXPECT_EQ(placeOf({0, 0, 3200, 1080}, kTwo), (HostedPlace{0, false}));
}

TEST(HostedPlace, isTheFirstDisplayForAWindowOnNone) {
  EXPECT_EQ(placeOf({-500, -500, 300, 200}, kTwo), (HostedPlace{0, true}));
  EXPECT_EQ(placeOf({9000, 9000, 1920, 1080}, kTwo), (HostedPlace{0, false}));
}

TEST(HostedPlace, isAPreviewWhereMostOfTheDisplayStaysUncovered) {
  EXPECT_TRUE(placeOf({2000, 100, 320, 240}, kTwo)->isPreview);
  EXPECT_TRUE(placeOf({100, 100, 900, 600}, kTwo)->isPreview);
  EXPECT_FALSE(placeOf({0, 40, 1920, 1040}, kTwo)->isPreview);
}

TEST(HostedPlace, isNoPreviewOnADisplayThatIsSmallItself) {
  EXPECT_EQ(placeOf({0, 0, 480, 320}, {{0, 0, 480, 320}}), (HostedPlace{0, false}));
}

TEST(HostedPlace, isNowhereWithoutDisplays) {
  EXPECT_EQ(placeOf({0, 0, 10, 10}, {}), std::nullopt);
}

TEST(HostedPlace, copesWithTheLargestNumbers) {
  constexpr int kMost = std::numeric_limits<int>::max();
  EXPECT_EQ(placeOf({kMost, kMost, kMost, kMost}, {{0, 0, 800, 600}}), (HostedPlace{0, false}));
}

}  // namespace pelmora::host
