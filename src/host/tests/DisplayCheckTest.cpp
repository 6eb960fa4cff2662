#include "host/DisplayCheck.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>

namespace pelmora::host {

class DisplayCheckTest : public testing::Test {
 protected:
  DisplayCheckTest() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
  }
  ~DisplayCheckTest() override { setenv("QT_QPA_PLATFORM", "offscreen", 1); }
};

TEST_F(DisplayCheckTest, saysThatThereIsNone) {
  EXPECT_NE(checkDisplay().error().message.find("there is no display"), std::string::npos);
}

TEST_F(DisplayCheckTest, saysThatAServerDoesNotAnswer) {
  setenv("DISPLAY", ":4711", 1);
  EXPECT_NE(checkDisplay().error().message.find("does not answer"), std::string::npos);
  unsetenv("DISPLAY");
  setenv("WAYLAND_DISPLAY", "/nowhere/wayland-0", 1);
  EXPECT_FALSE(checkDisplay());
}

TEST_F(DisplayCheckTest, findsACompositorThatListens) {
  const platform::TemporaryFolder folder;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = (folder.path() / "wayland-9").bytes();
  ASSERT_LT(path.size(), sizeof address.sun_path);
  std::memcpy(address.sun_path, path.c_str(), path.size());
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(server, 1), 0);
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("WAYLAND_DISPLAY", "wayland-9", 1);
  EXPECT_TRUE(checkDisplay());
  EXPECT_TRUE(compositorAnswers());
  EXPECT_FALSE(xServerAnswers());
  close(server);
}

TEST_F(DisplayCheckTest, trustsAPlatformThatNeedsNoServer) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  EXPECT_TRUE(checkDisplay());
}

}  // namespace pelmora::host
