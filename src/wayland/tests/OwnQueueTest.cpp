#include "wayland/OwnQueue.h"

#include "wayland/tests/FakeCompositor.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pelmora::wayland {

TEST(OwnQueue, returnsWhenTheCompositorHasDoneWhatItWasAskedFor) {
  FakeCompositor compositor;
  wl_surface_commit(compositor.surface());
  OwnQueue queue(compositor.display());
  ASSERT_TRUE(queue.roundTrip());
  const auto requests = compositor.requestsThatCame();
  EXPECT_NE(std::find(requests.begin(), requests.end(), "commit"), requests.end());
}

TEST(OwnQueue, readsWhatIsForOthersAndLeavesItToThem) {
  const FakeCompositor compositor;
  bool isAnswered = false;
  wl_callback* answer = wl_display_sync(compositor.display());
  static constexpr wl_callback_listener kListener = {
      [](void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; }};
  wl_callback_add_listener(answer, &kListener, &isAnswered);
  OwnQueue queue(compositor.display());
  ASSERT_TRUE(queue.roundTrip());
  EXPECT_FALSE(isAnswered);
  wl_display_dispatch_pending(compositor.display());
  EXPECT_TRUE(isAnswered);
  wl_callback_destroy(answer);
}

TEST(OwnQueue, waitsOnlySoLongForAnAnswer) {
  FakeCompositor compositor;
  compositor.hang();
  OwnQueue queue(compositor.display());
  EXPECT_FALSE(queue.roundTrip(std::chrono::milliseconds(20)));
}

TEST(OwnQueue, doesNotWaitOnALostConnection) {
  FakeCompositor compositor;
  compositor.die();
  OwnQueue queue(compositor.display());
  EXPECT_FALSE(queue.roundTrip(std::chrono::hours(1)));
}

}  // namespace pelmora::wayland
