#include "wayland/Registry.h"

#include "wayland/tests/FakeCompositor.h"

#include <gtest/gtest.h>

namespace pelmora::wayland {

TEST(Registry, bindsWhatTheCompositorOffers) {
  const FakeCompositor compositor;
  wl_proxy* bound = bindGlobal(compositor.display(), wl_output_interface, 1);
  ASSERT_NE(bound, nullptr);
  EXPECT_EQ(wl_proxy_get_version(bound), 1U);
  EXPECT_GE(wl_display_roundtrip(compositor.display()), 0);
  wl_proxy_destroy(bound);
}

TEST(Registry, findsNothingThatIsNotOfferedOrTooOld) {
  const FakeCompositor compositor;
  EXPECT_EQ(bindGlobal(compositor.display(), wl_seat_interface, 1), nullptr);
  EXPECT_EQ(bindGlobal(compositor.display(), wl_output_interface, 2), nullptr);
}

TEST(Registry, waitsOnlySoLongForAnAnswer) {
  FakeCompositor compositor;
  compositor.hang();
  EXPECT_EQ(bindGlobal(compositor.display(), wl_output_interface, 1, std::chrono::milliseconds(20)),
            nullptr);
}

TEST(Registry, findsNothingOnALostConnection) {
  FakeCompositor compositor;
  compositor.die();
  EXPECT_EQ(bindGlobal(compositor.display(), wl_output_interface, 1), nullptr);
}

}  // namespace pelmora::wayland
