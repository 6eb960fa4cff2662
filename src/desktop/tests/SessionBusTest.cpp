#include "desktop/SessionBus.h"

#include "desktop/tests/TestBus.h"

#include <QDBusConnection>
#include <QThread>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <thread>

namespace pelmora::desktop {

namespace {

constexpr std::chrono::seconds kPatience(20);

/// Until the threads that were left to themselves have ended.
void waitUntilNoThreadIsNamed(const std::string& name) {
  const auto isThere = [&name] {
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
      std::string found;
      std::ifstream comm(task.path() / "comm");
      std::getline(comm, found);
      if (found == name) return true;
    }
    return false;
  };
  while (isThere()) std::this_thread::yield();
}

/// A socket at `path` that takes connections, and never says anything.
int silentSocket(const std::string& path) {
  const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un name{};
  name.sun_family = AF_UNIX;
  path.copy(name.sun_path, sizeof name.sun_path - 1);
  bind(listening, reinterpret_cast<const sockaddr*>(&name), sizeof name);
  listen(listening, 8);
  return listening;
}

}  // namespace

TEST(SessionBus, runsTasksInOrderOnAThreadOfItsOwn) {
  TestBus testBus;
  platform::RecordingLog log;
  std::promise<std::string> ran;
  const auto here = QThread::currentThread();
  std::string order;
  SessionBus bus(testBus.address(), log);
  bus.post([&](const QDBusConnection&) { order += 'a'; });
  bus.post([&](const QDBusConnection& connection) {
    order += connection.isConnected() && QThread::currentThread() != here ? 'b' : '?';
  });
  bus.post([&](const QDBusConnection&) { ran.set_value(order + 'c'); });
  auto result = ran.get_future();
  ASSERT_EQ(result.wait_for(kPatience), std::future_status::ready);
  EXPECT_EQ(result.get(), "abc");
}

TEST(SessionBus, runsAtItsEndWhatWasPosted) {
  TestBus testBus;
  platform::RecordingLog log;
  int ran = 0;
  {
    SessionBus bus(testBus.address(), log);
    for (int i = 0; i < 100; ++i) bus.post([&ran](const QDBusConnection&) { ++ran; });
  }
  EXPECT_EQ(ran, 100);
}

TEST(SessionBus, saysOnceThatThereIsNone) {
  TestBus testBus;
  platform::RecordingLog log;
  int ran = 0;
  {
    SessionBus none("", log);
    SessionBus unreachable("unix:path=/nonexistent/bus", log);
    for (int i = 0; i < 100; ++i) {
      none.post([&ran](const QDBusConnection&) { ++ran; });
      unreachable.post([&ran](const QDBusConnection&) { ++ran; });
    }
  }
  EXPECT_EQ(ran, 0);
  EXPECT_EQ(log.lines().size(), 2U);
}

TEST(SessionBus, saysOnceThatItHasGone) {
  TestBus testBus;
  platform::RecordingLog log;
  {
    SessionBus bus(testBus.address(), log);
    std::promise<void> connected;
    bus.post([&connected](const QDBusConnection&) { connected.set_value(); });
    ASSERT_EQ(connected.get_future().wait_for(kPatience), std::future_status::ready);
    testBus.kill();
    while (log.lines().empty()) std::this_thread::yield();
  }
  EXPECT_EQ(log.lines(), std::vector<std::string>{"Pelmora: The session's bus has gone"});
}

TEST(SessionBus, keepsObjectsOnItsThread) {
  TestBus testBus;
  platform::RecordingLog log;
  struct Object {
    explicit Object(std::string& all) : calls(all) { calls += 'm'; }
    ~Object() { calls += 'd'; }
    std::string& calls;
  };
  std::string told;
  {
    SessionBus bus(testBus.address(), log);
    OnBus<Object> object(bus, [&told](const auto&) { return std::make_unique<Object>(told); });
    object.call([](Object& made) { made.calls += 'c'; });
  }
  EXPECT_EQ(told, "mcd");
  {
    SessionBus none("", log);
    OnBus<Object> object(none, [&told](const auto&) { return std::make_unique<Object>(told); });
    object.call([](Object& made) { made.calls += 'c'; });
  }
  EXPECT_EQ(told, "mcd");
}

TEST(SessionBus, leavesABusThatKeepsItWaiting) {
  const platform::TemporaryFolder folder;
  TestBus testBus;
  platform::RecordingLog log;
  const std::string path = folder.path().bytes() + "/bus";
  const int listening = silentSocket(path);
  int ran = 0;
  {
    SessionBus silent("unix:path=" + path, log, std::chrono::milliseconds(20));
    silent.post([&ran](const QDBusConnection&) { ++ran; });
  }
  EXPECT_TRUE(SessionBus::isAnyLeftToItself());
  close(listening);  // which ends the wait of the thread that was left
  {
    SessionBus next(testBus.address(), log, kPatience);
    next.post([&ran](const QDBusConnection&) { ran += 10; });
  }
  EXPECT_EQ(ran, 10);
  EXPECT_TRUE(log.lines().empty());
  waitUntilNoThreadIsNamed("session bus");  // at the end of the process it would find half of it
}

TEST(SessionBus, isFoundWhereTheSessionSaysElseInItsRuntimeFolder) {
  const platform::TemporaryFolder folder;
  const std::string runtime = folder.path().bytes();
  EXPECT_EQ(sessionBusAddress("unix:path=/a", runtime), "unix:path=/a");
  EXPECT_EQ(sessionBusAddress("", runtime), "");
  EXPECT_EQ(sessionBusAddress("", ""), "");
  const int listening = silentSocket(runtime + "/bus");
  EXPECT_EQ(sessionBusAddress("", runtime), "unix:path=" + runtime + "/bus");
  EXPECT_EQ(sessionBusAddress("disabled:", runtime), "unix:path=" + runtime + "/bus");
  close(listening);
  const std::string odd = folder.mkdir("a: b").bytes();
  const int other = silentSocket(odd + "/bus");
  EXPECT_EQ(sessionBusAddress("", odd), "unix:path=" + runtime + "/a%3a%20b/bus");
  close(other);
}

TEST(SessionBus, isNeverStartedByTheToolkit) {
  const platform::TemporaryFolder folder;
  const std::string runtime = folder.path().bytes();
  setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
  const auto named = [](const char* address) {
    setenv("DBUS_SESSION_BUS_ADDRESS", address, 1);
    neverStartSessionBus();
    return std::string(std::getenv("DBUS_SESSION_BUS_ADDRESS"));
  };
  EXPECT_EQ(named("unix:path=/a"), "unix:path=/a");
  EXPECT_EQ(named(""), "disabled:");
  const int listening = silentSocket(runtime + "/bus");
  EXPECT_EQ(named(""), "unix:path=" + runtime + "/bus");
  close(listening);
}

}  // namespace pelmora::desktop
