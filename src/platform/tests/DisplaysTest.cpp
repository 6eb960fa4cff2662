#include "platform/Displays.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(Displays, describesAFrameInOneWord) {
  EXPECT_EQ(describe(Rect{{0, 0}, {1920, 1080}}), "{{0, 0}, {1920, 1080}}");
  EXPECT_EQ(describe(Display{1, "DP-1", {{-1280, 0}, {1280.5, 1024}}, 2}),
            "DP-1 {{-1280, 0}, {1280.5, 1024}}");
}

}  // namespace pelmora::platform
