#include "shared/ReferenceTime.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora {

TEST(ReferenceTime, countsFromTheYear2001) {
  EXPECT_EQ(ReferenceTime::fromPosix(978307200, 0), ReferenceTime{0});
  EXPECT_EQ(ReferenceTime::fromPosix(978307201, 500000000), ReferenceTime{1.5});
  EXPECT_DOUBLE_EQ(ReferenceTime{0}.posixSeconds(), 978307200.0);
}

TEST(ReferenceTime, takesAnyNumberOfSeconds) {
  constexpr long long kFirst = std::numeric_limits<long long>::min();
  EXPECT_LT(ReferenceTime::fromPosix(kFirst, 0), ReferenceTime::distantPast());
  EXPECT_GT(ReferenceTime::fromPosix(std::numeric_limits<long long>::max(), 999'999'999),
            ReferenceTime{9e18});
}

TEST(ReferenceTime, distantPastIsBeforeEveryFileDate) {
  EXPECT_LT(ReferenceTime::distantPast(), ReferenceTime::fromPosix(-62135596800LL, 0));
}

}  // namespace pelmora
