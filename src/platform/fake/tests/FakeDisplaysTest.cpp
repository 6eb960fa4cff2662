#include "platform/fake/FakeDisplays.h"

#include "platform/fake/FakeSound.h"

#include <gtest/gtest.h>

namespace pelmora::platform {

TEST(FakeDisplays, areThoseThatATestChooses) {
  FakeDisplays displays;
  ASSERT_EQ(displays.screens().size(), 1U);
  EXPECT_EQ(displays.screens().front().frame, (Rect{{0, 0}, {1920, 1080}}));
  const Display second = FakeDisplays::display(2, {{1920, 0}, {1280, 1024}}, 2);
  EXPECT_EQ(second.name, "Display 2");
  displays.displays.push_back(second);
  EXPECT_EQ(displays.screens().back(), second);
}

TEST(FakeWindow, isOnNoDisplayUntilItIsPutOnOne) {
  FakeWindow window;
  EXPECT_FALSE(window.screen().has_value());
  window.display = FakeDisplays::display(3, {});
  EXPECT_EQ(window.screen()->id, 3U);
  EXPECT_EQ(FakeWindow(FakeDisplays::display(4, {})).screen()->id, 4U);
}

TEST(FakeSound, countsAndTellsOfEachBeep) {
  FakeSound sound;
  sound.beep();
  int told = 0;
  sound.onBeep = [&] { told = sound.beeps(); };
  sound.beep();
  EXPECT_EQ(told, 2);
}

}  // namespace pelmora::platform
