#include "idle/BusLink.h"

#include "desktop/tests/TestBus.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>

namespace pelmora::idle {

namespace {

class BusLinkTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<BusLink> link(const std::string& address) {
    return std::make_unique<BusLink>(
        address, "The test's bus", log,
        BusLink::Events{[this](const QDBusConnection& bus) { connection.emplace(bus); },
                        [this] { ++losses; }});
  }

  desktop::TestBus testBus;
  platform::RecordingLog log;
  std::optional<QDBusConnection> connection;
  int losses = 0;
};

}  // namespace

TEST_F(BusLinkTest, connectsAndTellsOnceThatTheBusHasGone) {
  auto made = link(testBus.address());
  while (!connection) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_TRUE(connection->isConnected());
  testBus.kill();
  while (losses == 0) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  QCoreApplication::processEvents();
  EXPECT_EQ(losses, 1);
  while (log.lines().empty()) std::this_thread::yield();
  made.reset();
  EXPECT_EQ(log.lines(), std::vector<std::string>{"Pelmora: The test's bus has gone"});
}

TEST_F(BusLinkTest, saysThatABusCannotBeReached) {
  const auto made = link("unix:path=/nonexistent/bus");
  while (log.countContaining("Pelmora: The test's bus cannot be reached: ") == 0) {
    QCoreApplication::processEvents();
  }
  EXPECT_FALSE(connection.has_value());
  EXPECT_EQ(losses, 0);
}

TEST_F(BusLinkTest, canGoBeforeItIsConnected) {
  link(testBus.address()).reset();
  QCoreApplication::processEvents();
  EXPECT_FALSE(connection.has_value());
}

}  // namespace pelmora::idle
