#include <gmock/gmock.h>

#include <clocale>
#include <cstdlib>

// One main for every test program: a fixed locale and time zone, no display.
int main(int argc, char** argv) {
  setenv("LC_ALL", "C.UTF-8", 1);
  setenv("TZ", "Europe/Berlin", 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  std::setlocale(LC_ALL, "");
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
