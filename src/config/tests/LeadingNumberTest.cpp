#include "config/LeadingNumber.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace pelmora::config {

TEST(LeadingNumber, isWhatATextBeginsWith) {
  EXPECT_EQ(leadingNumber("0.5"), 0.5);
  EXPECT_EQ(leadingNumber("2.5x"), 2.5);
  EXPECT_EQ(leadingNumber("  -3e2 "), -300);
  EXPECT_EQ(leadingNumber("+.25"), 0.25);
  EXPECT_EQ(leadingNumber("100,5"), 100);
}

TEST(LeadingNumber, isZeroWithoutOne) {
  for (const char* text : {"", "  ", "abc", "-", "--5", "+-5", ".", "inf", "nan", "-inf"}) {
    EXPECT_EQ(leadingNumber(text), 0) << text;
  }
}

TEST(LeadingNumber, endsAtTheEdgesOfADouble) {
  EXPECT_EQ(leadingNumber("1e999"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(leadingNumber("-1e999"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(leadingNumber("1e-999"), 0);
}

TEST(LeadingNumber, knowsNoLanguage) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");  // where the system has it
  EXPECT_EQ(leadingNumber("0.25"), 0.25);
  std::setlocale(LC_NUMERIC, before.c_str());
}

}  // namespace pelmora::config
