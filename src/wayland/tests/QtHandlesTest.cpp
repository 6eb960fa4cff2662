#include "wayland/QtHandles.h"

#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace pelmora::wayland {

TEST(QtHandles, areNullWhereThereIsNoWayland) {
  char name[] = "test";
  char* words[] = {name, nullptr};
  int count = 1;
  const QGuiApplication application(count, words);
  QWindow window;
  window.create();
  EXPECT_EQ(displayOfApplication(), nullptr);
  EXPECT_EQ(outputOf(*QGuiApplication::primaryScreen()), nullptr);
  EXPECT_EQ(surfaceOf(window), nullptr);
}

TEST(QtHandles, surfacesAreAskedForByTheEnvironment) {
  allowBareSurfaces();
  EXPECT_TRUE(qEnvironmentVariableIsSet("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT"));
}

}  // namespace pelmora::wayland
