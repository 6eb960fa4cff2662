#include "config/DayNames.h"

#include <gtest/gtest.h>

namespace pelmora::config {

TEST(DayNames, beginWithSunday) {
  EXPECT_EQ(dayName(0), "Sunday");
  EXPECT_EQ(dayName(6), "Saturday");
  EXPECT_EQ(dayName(1, QLocale::ShortFormat), "Mon");
}

TEST(DayNames, tellAMaskInWords) {
  EXPECT_EQ(daysText(127), "Every Day");
  EXPECT_EQ(daysText(0xFF), "Every Day");
  EXPECT_EQ(daysText(0), "No Days");
  EXPECT_EQ(daysText(0x80), "No Days");
  EXPECT_EQ(daysText(65), "Sun, Sat");
}

TEST(DayNames, areThoseOfTheUsersLanguage) {
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(dayName(0), "Sonntag");
  EXPECT_EQ(daysText(2), QLocale().standaloneDayName(1, QLocale::ShortFormat));
  QLocale::setDefault(QLocale::c());
}

}  // namespace pelmora::config
