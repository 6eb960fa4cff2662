#include "view/DateText.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace pelmora::view {

namespace {

/// Noon of 2026-11-21 where the tests are, which have no time zone of their own.
ReferenceTime noon() {
  std::tm day{};
  day.tm_year = 2026 - 1900;
  day.tm_mon = 10;
  day.tm_mday = 21;
  day.tm_hour = 12;
  day.tm_isdst = -1;
  return ReferenceTime::fromPosix(std::mktime(&day), 0);
}

}  // namespace

TEST(DateText, writesDatesAsTheUsersCountryDoes) {
  EXPECT_EQ(dateAndTimeText(noon(), "de_DE.UTF-8"), "21.11.26, 12:00:00");
  EXPECT_EQ(dateAndTimeText(noon(), "sv_SE"), "2026-11-21 12:00:00");
  EXPECT_EQ(timeText(noon(), "de_DE@euro"), "12:00:00");
}

TEST(DateText, knowsEveryLocaleThatAUserCanHave) {
  EXPECT_NE(dateAndTimeText(noon(), "C"), "");
  EXPECT_NE(dateAndTimeText(noon(), ""), "");
  EXPECT_NE(dateAndTimeText(noon(), "no such locale/"), "");
}

TEST(DateText, takesTheLocaleFromTheEnvironment) {
  setenv("LANG", "de_DE.UTF-8", 1);
  unsetenv("LC_TIME");
  unsetenv("LC_ALL");
  EXPECT_EQ(formatLocale(), "de_DE.UTF-8");
  setenv("LC_TIME", "sv_SE", 1);
  EXPECT_EQ(formatLocale(), "sv_SE");
  setenv("LC_ALL", "C", 1);
  EXPECT_EQ(formatLocale(), "C");
  unsetenv("LC_ALL");
  unsetenv("LC_TIME");
  unsetenv("LANG");
  EXPECT_EQ(formatLocale(), "C");
}

}  // namespace pelmora::view
