#include "host/DisplayCheck.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdlib>
#include <cstring>

namespace pelmora::host {

namespace {

/// A socket on which something listens.
int listenAt(const FilePath& file) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = file.bytes();
  EXPECT_LT(path.size(), sizeof address.sun_path);
  std::memcpy(address.sun_path, path.c_str(), path.size());
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  EXPECT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(listen(server, 16), 0);
  return server;
}

}  // namespace

class DisplayCheckTest : public testing::Test {
 protected:
  DisplayCheckTest() {
    for (const char* name :
         {"DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "QT_QPA_PLATFORM", "XDG_SESSION_TYPE"}) {
      unsetenv(name);
    }
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
  const int server = listenAt(folder.path() / "wayland-9");
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("WAYLAND_DISPLAY", "wayland-9", 1);
  EXPECT_TRUE(checkDisplay());
  EXPECT_TRUE(compositorAnswers());
  EXPECT_FALSE(xServerAnswers());

  // Which is of no use when Qt is told to turn to X.
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  EXPECT_FALSE(checkDisplay());
  setenv("QT_QPA_PLATFORM", "xcb;wayland-egl:scale=1", 1);
  EXPECT_TRUE(checkDisplay());
  close(server);
}

TEST_F(DisplayCheckTest, waitsForNoCompositorThatTakesNoMoreConnections) {
  const platform::TemporaryFolder folder;
  setenv("WAYLAND_DISPLAY", (folder.path() / "full").c_str(), 1);
  const int server = listenAt(folder.path() / "full");
  int taken = 0;
  while (taken < 100 && compositorAnswers()) ++taken;
  EXPECT_GT(taken, 0);
  EXPECT_LT(taken, 100);
  close(server);
}

TEST_F(DisplayCheckTest, knowsTheUsualNameOfAWaylandSessionsCompositor) {
  const platform::TemporaryFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("XDG_SESSION_TYPE", "wayland", 1);
  EXPECT_FALSE(checkDisplay());
  const int server = listenAt(folder.path() / "wayland-0");
  EXPECT_TRUE(checkDisplay());
  close(server);
}

TEST_F(DisplayCheckTest, prefersWaylandWhereItAnswersAndNothingElseIsWanted) {
  const platform::TemporaryFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  setenv("WAYLAND_DISPLAY", "wayland-9", 1);
  preferWayland();
  EXPECT_EQ(std::getenv("QT_QPA_PLATFORM"), nullptr);
  const int server = listenAt(folder.path() / "wayland-9");
  preferWayland();
  EXPECT_STREQ(std::getenv("QT_QPA_PLATFORM"), "wayland;xcb");
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  preferWayland();
  EXPECT_STREQ(std::getenv("QT_QPA_PLATFORM"), "xcb");
  close(server);
}

TEST_F(DisplayCheckTest, trustsAPlatformThatNeedsNoServer) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  EXPECT_TRUE(checkDisplay());
}

}  // namespace pelmora::host
