#include "idle/BusInhibitor.h"

#include "desktop/tests/BusFixture.h"

#include <memory>

namespace pelmora::idle {

namespace {

constexpr const char* kService = "org.example.Service";
constexpr const char* kPath = "/org/example";

BusQuestion question() {
  return {.who = "the example",
          .service = kService,
          .path = kPath,
          .interface = kService,
          .method = "IsHeld",
          .arguments = {7},
          .signalsOfChange = {{kService, "Changed",
                               [](const QDBusMessage& signal) {
                                 return signal.arguments() != QVariantList{"other"};
                               }}},
          .isHeld = [](const QDBusMessage& answer) {
            return answer.signature() == "b" && answer.arguments()[0].toBool();
          }};
}

class BusInhibitorTest : public desktop::BusFixture {
 protected:
  void answer(const QVariant& value) { other.answers["IsHeld"] = {value}; }
  /// Asks, and waits for the answer.
  bool ask() {
    bool isAnswered = false;
    inhibitor->ask([&isAnswered] { isAnswered = true; });
    waitUntil([&] { return isAnswered; });
    return inhibitor->isHeld();
  }

  int changes = 0;
  std::vector<std::string> said;
  std::unique_ptr<BusInhibitor> inhibitor = std::make_unique<BusInhibitor>(
      bus, question(), [this] { ++changes; },
      [this](const std::string& line) { said.push_back(line); }, 50);
};

}  // namespace

TEST_F(BusInhibitorTest, holdsWhatTheServiceSays) {
  answer(true);
  other.appear(kService, kPath);
  EXPECT_TRUE(ask());
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(other.calls[0].arguments(), QVariantList{7});
  EXPECT_EQ(inhibitor->holder(), "the example");
  answer(false);
  EXPECT_FALSE(ask());
  EXPECT_EQ(changes, 2);
}

TEST_F(BusInhibitorTest, holdsNothingWhereThereIsNoService) {
  EXPECT_FALSE(ask());
  EXPECT_TRUE(said.empty());
}

TEST_F(BusInhibitorTest, holdsNothingWhenTheAnswerIsAnErrorOrOfAnotherType) {
  other.appear(kService, kPath);
  EXPECT_FALSE(ask());
  answer("true");
  EXPECT_FALSE(ask());
}

TEST_F(BusInhibitorTest, asksAgainWhenSomethingHasChanged) {
  answer(false);
  other.appear(kService, kPath);
  EXPECT_FALSE(ask());
  answer(true);
  other.emitSignal(kPath, kService, "Changed");
  waitUntil([this] { return inhibitor->isHeld(); });
  EXPECT_EQ(changes, 1);
}

TEST_F(BusInhibitorTest, doesNotAskForSignalsThatDoNotConcernIt) {
  answer(true);
  other.appear(kService, kPath);
  EXPECT_TRUE(ask());
  settle();
  const auto asked = other.calls.size();
  other.emitSignal(kPath, kService, "Changed", {"other"});
  other.emitSignal(kPath, kService, "Another");
  settle();
  EXPECT_EQ(other.calls.size(), asked);
}

TEST_F(BusInhibitorTest, asksOneQuestionAtATimeHoweverManySignalsCome) {
  answer(true);
  other.appear(kService, kPath);
  EXPECT_TRUE(ask());
  settle();
  const auto asked = other.calls.size();
  for (int i = 0; i < 500; ++i) other.emitSignal(kPath, kService, "Changed");
  settle();
  EXPECT_GT(other.calls.size(), asked);
  EXPECT_LT(other.calls.size(), asked + 400);
}

TEST_F(BusInhibitorTest, letsGoWhenTheServiceGoesAndAsksWhenItComes) {
  answer(true);
  other.appear(kService, kPath);
  EXPECT_TRUE(ask());
  other.disappear(kService);
  waitUntil([this] { return !inhibitor->isHeld(); });
  EXPECT_EQ(changes, 2);
  EXPECT_TRUE(otherBus.registerService(kService));
  waitUntil([this] { return inhibitor->isHeld(); });
}

TEST_F(BusInhibitorTest, keepsWhatItHeldWhenThereIsNoAnswerInTime) {
  answer(true);
  other.appear(kService, kPath);
  EXPECT_TRUE(ask());
  other.isSilent = true;
  EXPECT_TRUE(ask());
  EXPECT_TRUE(ask());
  EXPECT_EQ(said, std::vector<std::string>{
                      "Pelmora: No answer whether the saver may start from the example"});
}

TEST_F(BusInhibitorTest, answersAtOnceWhenTheBusHasGone) {
  testBus.kill();
  while (bus.isConnected()) QCoreApplication::processEvents();
  bool isAnswered = false;
  inhibitor->ask([&isAnswered] { isAnswered = true; });
  EXPECT_TRUE(isAnswered);
}

TEST_F(BusInhibitorTest, canGoWhileItIsBeingAsked) {
  answer(true);
  other.appear(kService, kPath);
  inhibitor->ask([] { FAIL() << "nobody is there any more"; });
  inhibitor.reset();
  settle();
  EXPECT_EQ(changes, 0);
}

}  // namespace pelmora::idle
