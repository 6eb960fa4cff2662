#include "inspector/EmbeddedDate.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace pelmora::inspector {

namespace {

/// 2021-05-06 07:08:09 in Greenwich.
constexpr long long kMorning = 1620284889;

class EmbeddedDate : public testing::Test {
 protected:
  EmbeddedDate() {
    setenv("TZ", "XYZ-1", 1);  // an hour east
    tzset();
  }
  ~EmbeddedDate() override {
    unsetenv("TZ");
    tzset();
  }

  /// Seconds after `kMorning`.
  static std::optional<double> after(std::string_view text) {
    const auto date = dateFromText(text);
    if (!date) return std::nullopt;
    return date->posixSeconds() - static_cast<double>(kMorning);
  }
};

}  // namespace

TEST_F(EmbeddedDate, isReadAsExifAndAsXmpWriteIt) {
  EXPECT_EQ(after("2021:05:06 07:08:09Z"), 0);
  EXPECT_EQ(after("2021-05-06T07:08:09Z"), 0);
  EXPECT_EQ(after("2021-05-06T07:08:09.75Z"), 0);
  EXPECT_EQ(after("2021-05-06 07:08Z"), -9);
}

TEST_F(EmbeddedDate, goesByItsOffset) {
  EXPECT_EQ(after("2021:05:06 07:08:09 +02:00"), -7200);
  EXPECT_EQ(after("2021:05:06 07:08:09-0530"), 19800);
  EXPECT_EQ(after("2021:05:06 07:08:09 +00"), 0);
}

TEST_F(EmbeddedDate, isLocalWithoutOne) {
  EXPECT_EQ(after("2021:05:06 07:08:09"), -3600);
  EXPECT_EQ(after("2021:05:06 07:08:09 nonsense"), -3600);
  EXPECT_EQ(after("2021:05:06 07:08:09 +99:00"), -3600);
}

TEST_F(EmbeddedDate, beginsWhereItSaysNoMore) {
  const double midnight = -3600 - 7 * 3600 - 8 * 60 - 9;
  EXPECT_EQ(after("2021-05-06"), midnight);
  EXPECT_EQ(after("2021-05"), midnight - 5 * 86400);
  EXPECT_EQ(after("2021"), midnight - (31 + 28 + 31 + 30 + 5) * 86400);
}

TEST_F(EmbeddedDate, knowsTheCalendar) {
  EXPECT_TRUE(dateFromText("2020-02-29"));
  EXPECT_TRUE(dateFromText("2000-02-29"));
  EXPECT_FALSE(dateFromText("1900-02-29"));
  EXPECT_FALSE(dateFromText("2021-02-29"));
  EXPECT_FALSE(dateFromText("2021-04-31"));
}

TEST_F(EmbeddedDate, isNoneWhereThereIsNone) {
  for (const char* text :
       {"", " ", "0000:00:00 00:00:00", "    :  :     :  :  ", "2021:13:01", "2021:00:01",
        "2021:01:00", "2021:05:06 24:00:00", "2021:05:06 07:60:00", "2021:05:06 07:08:61",
        "2021:05:06 07", "2021:05:06 x", "yesterday", "21:05:06", "-2021:05:06", "2021:5:6"}) {
    EXPECT_FALSE(dateFromText(text)) << text;
  }
}

}  // namespace pelmora::inspector
