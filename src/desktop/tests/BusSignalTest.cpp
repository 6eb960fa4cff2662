#include "desktop/BusSignal.h"

#include "desktop/tests/BusFixture.h"

#include <memory>

namespace pelmora::desktop {

class BusSignalTest : public BusFixture {};

TEST_F(BusSignalTest, hearsTheSignalFromAnyoneUntilItGoes) {
  std::vector<QVariantList> heard;
  auto signal = std::make_unique<BusSignal>(
      bus, BusSignal::Name{"/org/example", "org.example.Thing", "Changed"},
      [&heard](const QDBusMessage& message) { heard.push_back(message.arguments()); });
  settle();  // the bus has been told who listens
  other.emitSignal("/org/example", "org.example.Thing", "Another");
  other.emitSignal("/org/other", "org.example.Thing", "Changed");
  other.emitSignal("/org/example", "org.example.Thing", "Changed", {7, "x"});
  waitUntil([&] { return !heard.empty(); });
  EXPECT_EQ(heard, std::vector<QVariantList>{(QVariantList{7, "x"})});
  signal.reset();
  other.emitSignal("/org/example", "org.example.Thing", "Changed");
  settle();
  EXPECT_EQ(heard.size(), 1U);
}

}  // namespace pelmora::desktop
