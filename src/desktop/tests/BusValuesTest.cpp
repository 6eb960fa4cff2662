#include "desktop/BusValues.h"

#include <QDBusVariant>
#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::desktop {

// Lists of variants and dictionaries are only read from messages: PlayerWatchTest sends some.

TEST(BusValues, areTextsNumbersAndTruths) {
  EXPECT_EQ(fromBus("Grüße"), plist::Value("Grüße"));
  EXPECT_EQ(fromBus(true), plist::Value(true));
  EXPECT_EQ(fromBus(-3), plist::Value(-3));
  EXPECT_EQ(fromBus(QVariant::fromValue<uchar>(200)), plist::Value(200));
  EXPECT_EQ(fromBus(QVariant::fromValue<short>(-2)), plist::Value(-2));
  EXPECT_EQ(fromBus(0.5), plist::Value(0.5));
  EXPECT_EQ(fromBus(QVariant::fromValue(QDBusVariant("in"))), plist::Value("in"));
}

TEST(BusValues, keepWholeNumbersThatFitAndTheSizeOfOthers) {
  EXPECT_EQ(fromBus(std::numeric_limits<qlonglong>::min()),
            plist::Value(std::numeric_limits<std::int64_t>::min()));
  EXPECT_EQ(fromBus(qulonglong{7}), plist::Value(7));
  EXPECT_EQ(fromBus(std::numeric_limits<qulonglong>::max()), plist::Value(0x1p64));
}

TEST(BusValues, areListsOfTexts) {
  EXPECT_EQ(fromBus(QStringList({"a", "b"})), plist::Value(plist::Array{"a", "b"}));
  EXPECT_EQ(fromBus(QStringList(1000, "a")).get<plist::Array>()->size(), kMostBusEntries);
}

TEST(BusValues, areNothingElse) {
  EXPECT_TRUE(fromBus({}).isNull());
  EXPECT_TRUE(fromBus(QByteArray("bytes")).isNull());
  EXPECT_TRUE(fromBus(QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant("deep")))))
                  .isNull());
  EXPECT_TRUE(dictionaryFromBus("text").empty());
}

TEST(BusValues, endATextThatIsLong) {
  const plist::Value text = fromBus(QString(3'000'000, 'x'));
  EXPECT_EQ(text.get<std::string>()->size(), static_cast<std::size_t>(kLongestBusText));
}

TEST(BusValues, goToTheBusAsTheyAre) {
  EXPECT_EQ(toBus("Grüße"), QVariant("Grüße"));
  EXPECT_EQ(toBus(true), QVariant(true));
  EXPECT_EQ(toBus(3), QVariant(qlonglong{3}));
  EXPECT_EQ(toBus(0.5), QVariant(0.5));
  EXPECT_FALSE(toBus(plist::Array{}).isValid());
  EXPECT_FALSE(toBus(plist::Dictionary{}).isValid());
  EXPECT_FALSE(toBus({}).isValid());
}

}  // namespace pelmora::desktop
