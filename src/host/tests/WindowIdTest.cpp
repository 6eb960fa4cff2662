#include "host/WindowId.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmora::host {

TEST(WindowId, isReadInBothWaysOfWriting) {
  EXPECT_EQ(parseWindowId("0x600016"), 0x600016U);
  EXPECT_EQ(parseWindowId("0X60001E"), 0x60001EU);
  EXPECT_EQ(parseWindowId("6291478"), 6291478U);
  EXPECT_EQ(parseWindowId("010"), 10U);
  EXPECT_EQ(parseWindowId("0x1fffffff"), 0x1fffffffU);
}

TEST(WindowId, isNeverZeroNorMoreThanAWindowCanHave) {
  for (const char* text : {"0", "0x0", "00", "0x20000000", "536870912", "4294967297", "0x100600016",
                           "99999999999999999999999999"}) {
    EXPECT_EQ(parseWindowId(text), std::nullopt) << text;
  }
}

TEST(WindowId, isNotReadOutOfOtherTexts) {
  for (const char* text : {"", "0x", "x", "-5", "+5", " 5", "5 ", "5x", "0x60001g", "0x-5", "0x0x5",
                           "600016abc", "wayland:3f2a", "1.5", "1e3"}) {
    EXPECT_EQ(parseWindowId(text), std::nullopt) << text;
  }
  EXPECT_EQ(parseWindowId(std::string_view("5\0", 2)), std::nullopt);
}

}  // namespace pelmora::host
