#include "platform/SharedBytes.h"

#include <gtest/gtest.h>

#include <memory>

namespace pelmora::platform {

TEST(SharedBytes, areEmptyAtFirst) {
  const SharedBytes none;
  EXPECT_EQ(none.size(), 0U);
  EXPECT_EQ(none.begin(), none.end());
}

TEST(SharedBytes, takeAVectorsBytesWithoutACopy) {
  std::vector<std::uint8_t> bytes{1, 2, 3};
  const std::uint8_t* const place = bytes.data();
  const SharedBytes shared(std::move(bytes));
  EXPECT_EQ(shared.data(), place);
  EXPECT_EQ(std::vector(shared.begin(), shared.end()), (std::vector<std::uint8_t>{1, 2, 3}));
  EXPECT_EQ(shared[2], 3);
}

TEST(SharedBytes, shareTheirMemoryWithTheirCopies) {
  SharedBytes copy;
  {
    const SharedBytes first(std::vector<std::uint8_t>{7});
    copy = first;
    EXPECT_EQ(copy.data(), first.data());
  }
  EXPECT_EQ(copy[0], 7);
}

TEST(SharedBytes, keepAnotherOwnersMemoryAsLongAsAnyCopy) {
  int releases = 0;
  const std::uint8_t byte = 9;
  {
    SharedBytes copy;
    {
      const SharedBytes first(
          std::shared_ptr<const void>(&byte, [&releases](const void*) { ++releases; }), {&byte, 1});
      copy = first;
    }
    EXPECT_EQ(releases, 0);
    EXPECT_EQ(copy[0], 9);
  }
  EXPECT_EQ(releases, 1);
}

}  // namespace pelmora::platform
