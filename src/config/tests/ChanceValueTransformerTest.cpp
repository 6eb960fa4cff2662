#include "config/ChanceValueTransformer.h"

#include "platform/fake/FakeServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelmora::config {

namespace {

class ChanceValueTransformerTest : public testing::Test {
 protected:
  using Value = ChanceValueTransformer::Value;

  /// Both directions are the same.
  void expect(const Value& value, const Value& wanted) {
    EXPECT_EQ(transformer.transformedValue(value), wanted);
    EXPECT_EQ(transformer.reverseTransformedValue(value), wanted);
  }

  platform::RecordingLog log;
  ChanceValueTransformer transformer{log};
};

}  // namespace

TEST_F(ChanceValueTransformerTest, readsNothingAsZero) {
  expect(std::nullopt, plist::Value(0));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(ChanceValueTransformerTest, readsTextsAsTheNumbersThatTheyBeginWith) {
  expect(plist::Value("0.5"), plist::Value(0.5));
  expect(plist::Value("2.5x"), plist::Value(2.5));
  expect(plist::Value("abc"), plist::Value(0.0));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(ChanceValueTransformerTest, leavesNumbersAsTheyAre) {
  expect(plist::Value(100), plist::Value(100));
  expect(plist::Value(0.25), plist::Value(0.25));
  expect(plist::Value(true), plist::Value(true));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(ChanceValueTransformerTest, saysWhatItDoesNotExpectAndLeavesIt) {
  const plist::Value date(ReferenceTime{5});
  EXPECT_EQ(transformer.transformedValue(date), date);
  EXPECT_THAT(log.lines(),
              testing::ElementsAre(
                  "Unexpected class 'NSDate' in ChanceValueTransformer's transformedValue."));
  EXPECT_EQ(transformer.reverseTransformedValue(plist::Value(plist::Array())),
            plist::Value(plist::Array()));
  EXPECT_EQ(log.lines().back(),
            "Unexpected class 'NSArray' in ChanceValueTransformer's transformedValue.");
}

}  // namespace pelmora::config
