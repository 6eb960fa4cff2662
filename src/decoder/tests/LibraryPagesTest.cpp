#include "decoder/LibraryPages.h"

#include "sandbox/MemoryUse.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace pelmora::decoder {

TEST(LibraryPages, areFewerAfterTheyWereGivenBackAndComeAgain) {
  const sandbox::MemoryUse memory;
  const auto read = [] { return std::strtod("2.5e3", nullptr); };
  EXPECT_EQ(read(), 2500);
  const auto resident = memory.now().resident;
  giveBackLibraryPages();
  EXPECT_LT(memory.now().resident, resident);
  EXPECT_EQ(read(), 2500);
}

}  // namespace pelmora::decoder
