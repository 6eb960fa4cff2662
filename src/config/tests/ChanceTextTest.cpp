#include "config/ChanceText.h"

#include <gtest/gtest.h>
#include <QLocale>

namespace pelmora::config {

namespace {

std::optional<QString> corrected(const char* text) {
  return correctedChance(QString::fromUtf8(text), kLowestChance, kHighestChance);
}

}  // namespace

TEST(ChanceText, isThePlainNumber) {
  EXPECT_EQ(chanceText(100), "100");
  EXPECT_EQ(chanceText(0.5), "0.5");
  EXPECT_EQ(chanceText(0.001), "0.001");
  EXPECT_EQ(chanceText(33.333), "33.333");
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(chanceText(0.5), "0.5");
  QLocale::setDefault(QLocale::c());
}

TEST(ChanceText, isCorrectedToTheNearerBound) {
  EXPECT_EQ(corrected("0"), "0.001");
  EXPECT_EQ(corrected("0.0009"), "0.001");
  EXPECT_EQ(corrected("-3"), "0.001");
  EXPECT_EQ(corrected("abc"), "0.001");
  EXPECT_EQ(corrected(""), "0.001");
  EXPECT_EQ(corrected("250"), "100");
  EXPECT_EQ(corrected("1e999"), "100");
  EXPECT_EQ(corrected("100.1"), "100");
}

TEST(ChanceText, staysWithinItsBounds) {
  for (const char* text : {"0.001", "55.5", "100", "2.5x", " 7 "}) {
    EXPECT_EQ(corrected(text), std::nullopt) << text;
  }
}

TEST(ChanceText, takesTheDecimalMarkOfTheLanguage) {
  const QLocale german(QLocale::German);
  EXPECT_EQ(withDecimalPoint("0,5", german), "0.5");
  EXPECT_EQ(withDecimalPoint(" 12,25 ", german), "12.25");
  EXPECT_EQ(withDecimalPoint("0.5", german), "0.5");
  EXPECT_EQ(withDecimalPoint("100", german), "100");
}

TEST(ChanceText, leavesEveryOtherTextAlone) {
  const QLocale german(QLocale::German);
  for (const char* text : {"1.000,5", "0,5x", "1,2,3", ",", "x", ""}) {
    EXPECT_EQ(withDecimalPoint(text, german), text);
  }
  EXPECT_EQ(withDecimalPoint("0,5", QLocale::c()), "0,5");
  EXPECT_EQ(withDecimalPoint("1,000", QLocale(QLocale::English)), "1,000");
}

}  // namespace pelmora::config
