#include "host/UserPaths.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace pelmora::host {

class UserPathsTest : public testing::Test {
 protected:
  UserPathsTest() {
    setenv("HOME", "/home/ann", 1);
    unsetenv("XDG_CONFIG_HOME");
    unsetenv("XDG_CACHE_HOME");
  }
};

TEST_F(UserPathsTest, areInTheUsersHome) {
  EXPECT_EQ(labelsPath().bytes(), "/home/ann/.config/Pelmora/labels");
  EXPECT_EQ(samplesPath().bytes(), "/home/ann/.cache/Pelmora/Sample Pictures");
}

TEST_F(UserPathsTest, followTheDesktopsSettings) {
  setenv("XDG_CONFIG_HOME", "/conf", 1);
  setenv("XDG_CACHE_HOME", "/cache", 1);
  EXPECT_EQ(labelsPath().bytes(), "/conf/Pelmora/labels");
  EXPECT_EQ(samplesPath().bytes(), "/cache/Pelmora/Sample Pictures");
}

TEST_F(UserPathsTest, leadNowhereWithoutAHome) {
  setenv("HOME", "relative", 1);
  EXPECT_EQ(labelsPath().bytes(), "/nonexistent/Pelmora/labels");
}

}  // namespace pelmora::host
