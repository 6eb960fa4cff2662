#include "host/QtSound.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(QtSound, beepsThroughTheToolkit) {
  char name[] = "test";
  char* words[] = {name, nullptr};
  int count = 1;
  const QApplication application(count, words);
  // The offscreen platform has no sound: that it may be asked for one is all there is to see.
  EXPECT_NO_THROW(QtSound().beep());
}

}  // namespace pelmora::host
