#include "host/ParseValues.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(ParseValues, readsNumbersWholeOrNotAtAll) {
  EXPECT_EQ(*parseNumber("2.5"), 2.5);
  EXPECT_EQ(*parseNumber("-1e3"), -1000.0);
  for (const char* bad : {"", "2,5", "2.5s", "nan", "inf", "1e999", " 1", "0x10"}) {
    EXPECT_FALSE(parseNumber(bad)) << bad;
  }
  EXPECT_EQ(*parseInteger("-12"), -12);
  for (const char* bad : {"", "1.0", "99999999999999999999", "+1"}) {
    EXPECT_FALSE(parseInteger(bad)) << bad;
  }
}

TEST(ParseValues, readsSizes) {
  EXPECT_EQ(*parseSize("1920x1080"), (Size{1920, 1080}));
  for (const char* bad : {"", "1920", "x", "0x10", "-5x5", "1920x1080x3", "40000x10", "19 20x3"}) {
    EXPECT_FALSE(parseSize(bad)) << bad;
  }
}

TEST(ParseValues, readsGeometries) {
  EXPECT_EQ(*parseGeometry("1280x1024+1920+0"), (Rect{{1920, 0}, {1280, 1024}}));
  EXPECT_EQ(*parseGeometry("1280x1024-1280+5"), (Rect{{-1280, 5}, {1280, 1024}}));
  EXPECT_EQ(*parseGeometry("1280x1024+-1280+5"), (Rect{{-1280, 5}, {1280, 1024}}));
  for (const char* bad : {"1x1", "1x1+0", "1x1+0+", "1x1+0+0 ", "1x1+0+0+0", "1x1++0+0"}) {
    EXPECT_FALSE(parseGeometry(bad)) << bad;
  }
}

TEST(ParseValues, readsListsOfDisplays) {
  const auto displays = parseGeometries("1920x1080+0+0,1280x1024+1920+0");
  ASSERT_TRUE(displays);
  ASSERT_EQ(displays->size(), 2U);
  EXPECT_EQ((*displays)[1], (Rect{{1920, 0}, {1280, 1024}}));
  EXPECT_FALSE(parseGeometries("1920x1080+0+0,"));
  EXPECT_FALSE(parseGeometries(""));
  std::string many = "1x1+0+0";
  for (int i = 0; i < 64; ++i) many += ",1x1+0+0";
  EXPECT_FALSE(parseGeometries(many));
}

TEST(ParseValues, readsLocalTimes) {
  // The tests run in Europe/Berlin: one hour ahead in November, two in July.
  EXPECT_DOUBLE_EQ(parseLocalTime("2026-11-21T12:00:00")->posixSeconds(), 1795258800.0);
  EXPECT_DOUBLE_EQ(parseLocalTime("2026-07-21T12:00:00")->posixSeconds(), 1784628000.0);
  for (const char* bad : {"", "2026-11-21", "2026-11-21T12:00:00Z", "2026-13-01T00:00:00"}) {
    EXPECT_FALSE(parseLocalTime(bad)) << bad;
  }
}

TEST(ParseValues, saysWhatWasExpected) {
  EXPECT_EQ(parseSize("huge").error().message, "'huge' is not a size such as 1920x1080");
}

}  // namespace pelmora::host
