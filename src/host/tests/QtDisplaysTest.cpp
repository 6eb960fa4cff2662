#include "host/QtDisplays.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(QtDisplays, turnsWindowSystemRectanglesUpsideDown) {
  const auto frames =
      flipped({{{0, 0}, {1920, 1080}}, {{1920, 0}, {1280, 1024}}, {{0, -600}, {800, 600}}});
  EXPECT_EQ(frames[0], (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(frames[1], (Rect{{1920, 56}, {1280, 1024}}));
  EXPECT_EQ(frames[2], (Rect{{0, 1080}, {800, 600}}));
}

TEST(QtDisplays, putsTheFirstDisplayAtTheOrigin) {
  const auto frames = flipped({{{1280, 24}, {1920, 1080}}, {{0, 0}, {1280, 1024}}});
  EXPECT_EQ(frames[0], (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(frames[1], (Rect{{-1280, 80}, {1280, 1024}}));
  EXPECT_TRUE(flipped({}).empty());
}

}  // namespace pelmora::host
