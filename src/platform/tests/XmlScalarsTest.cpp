#include "platform/XmlScalars.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace pelmora::plist {

TEST(XmlScalars, readsIntegersToTheEndsOfTheirRange) {
  EXPECT_EQ(integerFromText(" 42\n"), 42);
  EXPECT_EQ(integerFromText("-0x10"), -16);
  EXPECT_EQ(integerFromText("+0"), 0);
  EXPECT_EQ(integerFromText("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(integerFromText("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(XmlScalars, refusesWhatIsNoInteger) {
  for (const char* const wrong :
       {"", "-", "1 2", "1.0", "0x", "--1", "9223372036854775808", "-9223372036854775809", "1e3"}) {
    EXPECT_EQ(integerFromText(wrong), std::nullopt) << wrong;
  }
}

TEST(XmlScalars, readsRealsInEveryLocale) {
  // Where the locale is not installed, this is the same test in the one that is set.
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  EXPECT_EQ(realFromText("0.25"), 0.25);
  EXPECT_EQ(realFromText("0,25"), std::nullopt);
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(realFromText(" +1e-3 "), 0.001);
  EXPECT_EQ(realFromText("-inf"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(realFromText("+-1"), std::nullopt);
  EXPECT_EQ(realFromText(""), std::nullopt);
}

TEST(XmlScalars, readsDatesFromTheReferenceDate) {
  EXPECT_EQ(dateFromText("2001-01-01T00:00:00Z"), ReferenceTime{0});
  EXPECT_EQ(dateFromText("\n2000-12-31T23:59:59Z "), ReferenceTime{-1});
  EXPECT_EQ(dateFromText("2024-02-29T12:00:00Z"), ReferenceTime{730900800});
}

TEST(XmlScalars, refusesDatesThatAreNone) {
  for (const char* const wrong :
       {"", "2001-01-01", "2001-13-01T00:00:00Z", "2023-02-29T00:00:00Z", "2001-01-01T24:00:00Z",
        "2001-01-01T00:00:00+", "2001-01-01 00:00:00Z", "-001-01-01T00:00:00Z"}) {
    EXPECT_EQ(dateFromText(wrong), std::nullopt) << wrong;
  }
}

TEST(XmlScalars, readsDataOfEveryRemainder) {
  EXPECT_EQ(dataFromText(""), Bytes{});
  EXPECT_EQ(dataFromText("AA=="), Bytes{0});
  EXPECT_EQ(dataFromText("\n\tAAH\n/"), (Bytes{0, 1, 255}));
  EXPECT_EQ(dataFromText("+/8="), (Bytes{0xFB, 0xFF}));
  EXPECT_EQ(dataFromText("YWJjZA=="), (Bytes{'a', 'b', 'c', 'd'}));
}

TEST(XmlScalars, refusesDamagedData) {
  for (const char* const wrong : {"A", "AA", "AAA", "A===", "====", "AA==AA==", "AA=A", "AA*="}) {
    EXPECT_EQ(dataFromText(wrong), std::nullopt) << wrong;
  }
}

}  // namespace pelmora::plist
