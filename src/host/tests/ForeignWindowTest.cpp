#include "host/ForeignWindow.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace pelmora::host {

class ForeignWindowTest : public testing::Test {
 protected:
  ForeignWindowTest() {
    if (const char* display = std::getenv("DISPLAY")) _display = display;
    setenv("DISPLAY", ":4711", 1);
  }
  ~ForeignWindowTest() override { setenv("DISPLAY", _display.c_str(), 1); }

 private:
  std::string _display;
};

TEST_F(ForeignWindowTest, isNotOpenedWithoutAServer) {
  const auto window = ForeignWindow::open(7);
  ASSERT_FALSE(window);
  EXPECT_NE(window.error().message.find("no X server"), std::string::npos);
  EXPECT_FALSE(ForeignWindow::root());
}

}  // namespace pelmora::host
