#include "platform/Displays.h"

#include <gtest/gtest.h>

#include <clocale>

namespace pelmora::platform {

TEST(Displays, describesAFrameInOneWord) {
  EXPECT_EQ(describe(Rect{{0, 0}, {1920, 1080}}), "{{0, 0}, {1920, 1080}}");
  EXPECT_EQ(describe(Display{1, "DP-1", {{-1280, 0}, {1280.5, 1024}}, 2}),
            "DP-1 {{-1280, 0}, {1280.5, 1024}}");
}

TEST(Displays, describesAFrameTheSameInEveryLanguage) {
  // Where the locale is not installed, this is the same test in the one that is set.
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  EXPECT_EQ(describe(Rect{{-0.5, 1e6}, {1.25, 1e-5}}), "{{-0.5, 1e+06}, {1.25, 1e-05}}");
  std::setlocale(LC_NUMERIC, "C");
}

}  // namespace pelmora::platform
