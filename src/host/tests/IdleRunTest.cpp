#include "host/IdleRun.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace pelmora::host {

namespace {

class IdleRunTest : public testing::Test {
 protected:
  IdleRunTest() {
    unsetenv("WAYLAND_DISPLAY");
    unsetenv("DISPLAY");
  }
};

}  // namespace

TEST_F(IdleRunTest, wantsADisplay) {
  const auto displays = IdleDisplays::open();
  ASSERT_FALSE(displays);
  EXPECT_EQ(displays.error().message, "there is no display");
}

TEST_F(IdleRunTest, saysWhyTheDisplayCannotBeUsed) {
  setenv("WAYLAND_DISPLAY", "/nonexistent/wayland", 1);
  const auto compositor = IdleDisplays::open();
  ASSERT_FALSE(compositor);
  EXPECT_EQ(compositor.error().message.find("the Wayland compositor does not answer"), 0U);
  setenv("DISPLAY", ":47110", 1);
  const auto server = IdleDisplays::open();
  ASSERT_FALSE(server);
  EXPECT_EQ(server.error().message, "the X server does not answer");
}

}  // namespace pelmora::host
