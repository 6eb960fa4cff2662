#include "host/DescriptorLimit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

namespace pelmora::host {

namespace {

class DescriptorLimit : public testing::Test {
 protected:
  DescriptorLimit() { EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &_before), 0); }
  ~DescriptorLimit() override { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &_before), 0); }

  static rlim_t now() {
    rlimit limit{};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
  }
  void lower(rlim_t soft) const {
    const rlimit limit{soft, _before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }

 private:
  rlimit _before{};
};

}  // namespace

TEST_F(DescriptorLimit, isLeftAloneWhereItDoes) {
  lower(64);
  EXPECT_TRUE(ensureDescriptors().ok());
  EXPECT_EQ(now(), 64U);
}

TEST_F(DescriptorLimit, isRaisedWhereTheSystemAllowsIt) {
  lower(12);
  EXPECT_TRUE(ensureDescriptors().ok());
  EXPECT_EQ(now(), kFewestDescriptors);
}

TEST_F(DescriptorLimit, isSaidToBeTooLowWhereItIs) {
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
  ASSERT_NE(limit.rlim_max, RLIM_INFINITY);
  const auto most = static_cast<std::size_t>(limit.rlim_max);
  EXPECT_EQ(ensureDescriptors(most + 1).error().message, "only " + std::to_string(most) +
                                                             " files may be open, and it needs " +
                                                             std::to_string(most + 1));
}

}  // namespace pelmora::host
