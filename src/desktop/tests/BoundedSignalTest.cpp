#include "desktop/BoundedSignal.h"

#include "desktop/tests/StopFixture.h"

#include <atomic>

namespace pelmora::desktop {

class BoundedSignalTest : public StopFixture {
 protected:
  [[nodiscard]] std::unique_ptr<BoundedSignal> make(const QDBusConnection& connection,
                                                    const QString& firstArgument = {}) {
    return std::make_unique<BoundedSignal>(
        connection,
        BoundedSignal::Name{.sender = {},
                            .path = {},
                            .interface = "a.b",
                            .member = "C",
                            .firstArgument = firstArgument},
        pace, [this](const QDBusMessage& message) {
          ++heard;
          scheduler.post([this, message] { last = message.arguments(); });
        });
  }
  static QDBusMessage signal(const QVariantList& arguments = {}) {
    QDBusMessage message = QDBusMessage::createSignal("/x", "a.b", "C");
    message.setArguments(arguments);
    return message;
  }

  std::atomic<int> heard = 0;
  QVariantList last;  // on main
};

TEST_F(BoundedSignalTest, hearsWhatItListensTo) {
  const OnBus<BoundedSignal> listener(bus,
                                      [this](const auto& connection) { return make(connection); });
  settle();
  send(QDBusMessage::createSignal("/x", "a.b", "Other"));
  send(signal({"text", 3}));
  scheduler.runPostedUntil([this] { return !last.isEmpty(); });
  EXPECT_EQ(last, (QVariantList{"text", 3}));
  EXPECT_EQ(heard, 1);
}

TEST_F(BoundedSignalTest, hearsTheFirstArgumentThatItWants) {
  const OnBus<BoundedSignal> listener(
      bus, [this](const auto& connection) { return make(connection, "wanted"); });
  settle();
  send(signal({"unwanted"}));
  send(signal({"wanted"}));
  scheduler.runPostedUntil([this] { return !last.isEmpty(); });
  EXPECT_EQ(heard, 1);
}

TEST_F(BoundedSignalTest, hasOneThatComesAllTheTimeKeptAwayForAWhile) {
  pace.window = std::chrono::hours(1);
  OnBus<BoundedSignal> listener(bus, [this](const auto& connection) { return make(connection); });
  settle();
  send(signal(), 500);
  settle();
  EXPECT_EQ(heard, pace.heardInWindow);
  bool isListening = true;
  listener.call([&isListening](BoundedSignal& each) { isListening = each.isListening(); });
  settle();
  EXPECT_FALSE(isListening);
}

TEST_F(BoundedSignalTest, listensAgainAfterTheWhile) {
  pace.window = std::chrono::milliseconds(5);
  const OnBus<BoundedSignal> listener(bus,
                                      [this](const auto& connection) { return make(connection); });
  settle();
  send(signal(), 500);
  settle();
  const int before = heard;
  while (heard == before) send(signal({"again"}));
  scheduler.runPostedUntil([this] { return !last.isEmpty(); });
}

}  // namespace pelmora::desktop
