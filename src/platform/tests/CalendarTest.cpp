#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace pelmora::platform {

namespace {

/// The process's time zone for as long as it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* name) : _before(std::getenv("TZ")) { setenv("TZ", name, 1); }
  ~TimeZone() { setenv("TZ", _before.c_str(), 1); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::string _before;
};

constexpr double kDay = 86400;

}  // namespace

TEST(Calendar, countsWeekdaysFromSunday) {
  const TimeZone utc("UTC0");
  // The reference date, 2001-01-01, was a Monday.
  EXPECT_EQ(weekday({0}), 2);
  EXPECT_EQ(weekday({5 * kDay}), 7);
  EXPECT_EQ(weekday({6 * kDay}), 1);
  EXPECT_EQ(weekday({-1 * kDay}), 1);
}

TEST(Calendar, changesDayAtLocalMidnight) {
  const TimeZone east("TST-5:30");
  const double midnight = kDay - 5.5 * 3600;
  EXPECT_EQ(weekday({midnight - 0.001}), 2);
  EXPECT_EQ(weekday({midnight}), 3);
}

TEST(Calendar, followsAChangeOfTimeZone) {
  const ReferenceTime evening{kDay - 1};
  {
    const TimeZone utc("UTC0");
    EXPECT_EQ(weekday(evening), 2);
  }
  const TimeZone east("TST-9");
  EXPECT_EQ(weekday(evening), 3);
}

TEST(Calendar, followsSummerTime) {
  const TimeZone berlin("CET-1CEST,M3.5.0,M10.5.0/3");
  // 2026-10-25 is 25 hours long: 00:00 summer time is 22:00 UTC, the next 00:00 is 23:00 UTC.
  const double sunday = ReferenceTime::fromPosix(1792879200, 0).seconds;
  EXPECT_EQ(weekday({sunday - 1}), 7);
  EXPECT_EQ(weekday({sunday}), 1);
  EXPECT_EQ(weekday({sunday + 24 * 3600}), 1);
  EXPECT_EQ(weekday({sunday + 25 * 3600}), 2);
}

TEST(Calendar, beginsTheNextDayAtMidnight) {
  const TimeZone utc("UTC0");
  EXPECT_EQ(beginOfNextDay({0}).seconds, kDay);
  EXPECT_EQ(beginOfNextDay({0.25}).seconds, kDay);
  EXPECT_EQ(beginOfNextDay({kDay - 10}).seconds, kDay);
  EXPECT_EQ(beginOfNextDay({kDay - 0.001}).seconds, kDay);
  EXPECT_EQ(beginOfNextDay({kDay}).seconds, 2 * kDay);
  EXPECT_EQ(beginOfNextDay({364 * kDay + 5}).seconds, 365 * kDay);  // over the end of a year
}

TEST(Calendar, beginsTheNextDayInTheUsersTimeZone) {
  const TimeZone east("TST-5:30");
  EXPECT_EQ(beginOfNextDay({0}).seconds, kDay - 5.5 * 3600);
}

TEST(Calendar, knowsThatDaysDifferInLengthWhenClocksAreChanged) {
  const TimeZone berlin("CET-1CEST,M3.5.0,M10.5.0/3");
  const double autumn = ReferenceTime::fromPosix(1792879200, 0).seconds;  // 2026-10-25 00:00
  EXPECT_EQ(beginOfNextDay({autumn}).seconds, autumn + 25 * 3600);
  const double spring = ReferenceTime::fromPosix(1774738800, 0).seconds;  // 2026-03-29 00:00
  EXPECT_EQ(beginOfNextDay({spring}).seconds, spring + 23 * 3600);
}

TEST(Calendar, beginsADayWithoutAMidnightAtItsFirstMoment) {
  // Clocks go from 00:00 to 01:00 as the last Sunday of March begins.
  const TimeZone skipping("EET-2EEST,M3.5.0/0,M10.5.0/0");
  const double spring = ReferenceTime::fromPosix(1774735200, 0).seconds;  // 2026-03-29 00:00 EET
  EXPECT_EQ(beginOfNextDay({spring - 3600}).seconds, spring);
  EXPECT_EQ(weekday({spring}), 1);
}

TEST(Calendar, beginsADayOnceWhenClocksGoBackOverMidnight) {
  // Clocks go from 24:00 back to 23:00: Saturday's last hour comes twice.
  const TimeZone repeating("EET-2EEST,M3.5.0/0,M10.5.0/0");
  const double first = ReferenceTime::fromPosix(1792872000, 0).seconds;  // 23:00 EEST, 2026-10-24
  EXPECT_EQ(weekday({first}), 7);
  EXPECT_EQ(weekday({first + 3600}), 7);
  EXPECT_EQ(beginOfNextDay({first}).seconds, first + 2 * 3600);
}

TEST(Calendar, beginsSomeNextDayForNonsense) {
  EXPECT_EQ(beginOfNextDay({1e15}).seconds, 1e15 + kDay);
  EXPECT_GT(beginOfNextDay({9e14}).seconds, 9e14);
}

TEST(Calendar, givesSomeWeekdayForNonsense) {
  for (const double seconds :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e300, -1e300, 1e15, 9.9e14}) {
    const int day = weekday({seconds});
    EXPECT_GE(day, 1) << seconds;
    EXPECT_LE(day, 7) << seconds;
  }
}

}  // namespace pelmora::platform
