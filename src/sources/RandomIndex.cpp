#include "sources/RandomIndex.h"

#include "shared/Random.h"

#include <cstdlib>
#include <limits>

namespace pelmora::sources {

std::uint64_t randomIndexBetween(std::uint64_t lo, std::uint64_t hi) {
  const std::uint64_t size = hi - lo + 1;
  const float step = static_cast<float>(size) * (static_cast<float>(random()) / kRandomRange);
  constexpr float kEnd = 18446744073709551616.0F;  // 2^64, the first that doesn't fit
  const std::uint64_t offset =
      step < kEnd ? static_cast<std::uint64_t>(step) : std::numeric_limits<std::uint64_t>::max();
  return offset == size ? lo : lo + offset;
}

}  // namespace pelmora::sources
