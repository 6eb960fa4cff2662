#include "config/ScreensValueTransformer.h"

#include <gtest/gtest.h>

namespace pelmora::config {

namespace {

using Value = ScreensValueTransformer::Value;

const ScreensValueTransformer kTransformer("Alle");

Value text(const char* value) { return plist::Value(value); }

}  // namespace

TEST(ScreensValueTransformer, showsListsWithBlanks) {
  EXPECT_EQ(kTransformer.transformedValue(text("2")), text("2"));
  EXPECT_EQ(kTransformer.transformedValue(text("1,3")), text("1, 3"));
  EXPECT_EQ(kTransformer.transformedValue(text("1,2,3")), text("1, 2, 3"));
  EXPECT_EQ(kTransformer.transformedValue(text(",x,")), text(", x, "));
  EXPECT_EQ(kTransformer.transformedValue(text("1, 3")), text("1,  3"));
}

TEST(ScreensValueTransformer, storesListsWithoutBlanks) {
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("2")), text("2"));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("1, 3")), text("1,3"));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("1,3")), text("1,3"));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("1,  3")), text("1, 3"));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("")), text(""));
}

TEST(ScreensValueTransformer, callsEveryScreenByItsWord) {
  EXPECT_EQ(kTransformer.transformedValue(text("")), text("Alle"));
  EXPECT_EQ(kTransformer.transformedValue(std::nullopt), text("Alle"));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("Alle")), text(""));
  EXPECT_EQ(kTransformer.reverseTransformedValue(text("alle")), text("alle"));
}

TEST(ScreensValueTransformer, hasNoFormOfWhatIsNoText) {
  for (const plist::Value& value : {plist::Value(2), plist::Value(true), plist::Value(1.5)}) {
    EXPECT_EQ(kTransformer.transformedValue(value), std::nullopt);
    EXPECT_EQ(kTransformer.reverseTransformedValue(value), std::nullopt);
  }
  // Nothing shows as every screen, and yet stores as nothing.
  EXPECT_EQ(kTransformer.reverseTransformedValue(std::nullopt), std::nullopt);
}

}  // namespace pelmora::config
