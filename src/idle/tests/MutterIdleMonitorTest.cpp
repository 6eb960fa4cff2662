#include "idle/MutterIdleMonitor.h"

#include "desktop/tests/BusFixture.h"

#include <memory>
#include <optional>

namespace pelmora::idle {

namespace {

constexpr const char* kService = "org.gnome.Mutter.IdleMonitor";
constexpr const char* kPath = "/org/gnome/Mutter/IdleMonitor/Core";
constexpr unsigned int kIdleWatch = 7;
constexpr unsigned int kActiveWatch = 8;

class MutterIdleMonitorTest : public desktop::BusFixture {
 protected:
  MutterIdleMonitorTest() {
    other.answers = {{"AddIdleWatch", {kIdleWatch}},
                     {"AddUserActiveWatch", {kActiveWatch}},
                     {"RemoveWatch", {}}};
  }
  void start() {
    other.appear(kService, kPath);
    monitor->start(std::chrono::seconds(3), {[this] { ++idles; }, [this] { ++actives; }});
    waitForCall("AddIdleWatch");
    settle();
  }
  void waitForCall(const char* method) {
    waitUntil([&] { return !other.calls.empty() && other.calls.back().member() == method; });
    settle();
  }
  void fire(unsigned int watch) { other.emitSignal(kPath, kService, "WatchFired", {watch}); }

  QObject context;
  int idles = 0;
  int actives = 0;
  std::unique_ptr<MutterIdleMonitor> monitor = std::make_unique<MutterIdleMonitor>(bus);
};

}  // namespace

TEST_F(MutterIdleMonitorTest, tellsWhetherThereIsOne) {
  std::optional<bool> found;
  MutterIdleMonitor::look(bus, &context, [&found](bool isThere) { found = isThere; });
  waitUntil([&] { return found.has_value(); });
  EXPECT_FALSE(*found);
  other.appear(kService, kPath);
  found.reset();
  MutterIdleMonitor::look(bus, &context, [&found](bool isThere) { found = isThere; });
  waitUntil([&] { return found.has_value(); });
  EXPECT_TRUE(*found);
}

TEST_F(MutterIdleMonitorTest, tellsOfIdlenessAndOfActivityInTurns) {
  start();
  EXPECT_EQ(other.calls[0].arguments(), QVariantList{qulonglong(3000)});
  for (int turn = 1; turn <= 2; ++turn) {
    fire(kIdleWatch);
    waitUntil([&] { return idles == turn; });
    waitForCall("AddUserActiveWatch");
    fire(kActiveWatch);
    waitUntil([&] { return actives == turn; });
  }
  fire(kActiveWatch);
  settle();
  EXPECT_EQ(actives, 2);
}

TEST_F(MutterIdleMonitorTest, ignoresWatchesOfOthersAndSignalsThatOthersSend) {
  start();
  fire(1234);
  other.emitSignal(kPath, kService, "WatchFired", {"7"});
  QDBusMessage forged = QDBusMessage::createSignal(kPath, kService, "WatchFired");
  forged << kIdleWatch;
  bus.send(forged);
  settle();
  EXPECT_EQ(idles, 0);
  fire(kIdleWatch);
  waitUntil([&] { return idles == 1; });
}

TEST_F(MutterIdleMonitorTest, hearsAWatchThatFiresBeforeItsNumberIsTold) {
  other.isSilent = true;
  start();
  fire(kIdleWatch);
  settle();
  EXPECT_EQ(idles, 0);
  otherBus.send(other.calls.back().createReply(QVariantList{kIdleWatch}));
  waitUntil([&] { return idles == 1; });
}

TEST_F(MutterIdleMonitorTest, countsTheUserAsActiveWhileTheCompositorIsAway) {
  start();
  fire(kIdleWatch);
  waitUntil([&] { return idles == 1; });
  other.disappear(kService);
  waitUntil([&] { return actives == 1; });
  EXPECT_TRUE(otherBus.registerService(kService));
  waitForCall("AddIdleWatch");
  fire(kIdleWatch);
  waitUntil([&] { return idles == 2; });
}

TEST_F(MutterIdleMonitorTest, countsTheUserAsActiveWhenActivityCannotBeWatchedFor) {
  other.answers.remove("AddUserActiveWatch");
  start();
  fire(kIdleWatch);
  waitUntil([&] { return actives == 1; });
  EXPECT_EQ(idles, 1);
}

TEST_F(MutterIdleMonitorTest, removesItsWatchesAtItsEnd) {
  start();
  monitor.reset();
  waitForCall("RemoveWatch");
  EXPECT_EQ(other.calls.back().arguments(), QVariantList{kIdleWatch});
}

}  // namespace pelmora::idle
