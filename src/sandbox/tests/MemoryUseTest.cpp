#include "sandbox/MemoryUse.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace pelmora::sandbox {

TEST(MemoryUse, growsWithWhatIsAllocated) {
  constexpr std::int64_t kSize = 64 << 20;
  const MemoryUse use;
  const MemoryUse::Bytes before = use.now();
  EXPECT_GT(before.resident, 0);
  EXPECT_GE(before.mapped, before.resident);
  const std::vector<char> bytes(kSize, 'x');
  const MemoryUse::Bytes after = use.now();
  EXPECT_GE(after.mapped, before.mapped + kSize / 2);
  EXPECT_GE(after.resident, before.resident + kSize / 2);
  EXPECT_EQ(bytes.back(), 'x');
}

}  // namespace pelmora::sandbox
