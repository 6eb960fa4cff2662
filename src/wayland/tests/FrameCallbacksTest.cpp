#include "wayland/FrameCallbacks.h"

#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QWindow>

namespace pelmora::wayland {

TEST(FrameCallbacks, areAwaitedNowhereElse) {
  char name[] = "test";
  char* words[] = {name, nullptr};
  int count = 1;
  const QGuiApplication application(count, words);
  QWindow window;
  window.show();
  awaitFrameCallbacks({}, std::chrono::hours(1));
  awaitFrameCallbacks({&window}, std::chrono::hours(1));
  EXPECT_TRUE(window.isVisible());
}

}  // namespace pelmora::wayland
