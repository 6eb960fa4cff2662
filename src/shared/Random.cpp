#include "shared/Random.h"

#include <cstdlib>

namespace pelmora {

double randomDoubleBetween(double lo, double hi) {
  return lo + (hi - lo) * static_cast<double>(random()) / kRandomMax;
}

std::int32_t randomIntBetween(std::int32_t lo, std::int32_t hi) {
  // 64-bit difference: no pair of bounds overflows.
  const std::int64_t difference = static_cast<std::int64_t>(hi) - lo;
  const std::int64_t count = difference >= 0 ? difference + 1 : difference - 1;
  const float fraction = static_cast<float>(random()) / kRandomRange;
  const auto step = static_cast<std::int64_t>(static_cast<float>(count) * fraction);
  return static_cast<std::int32_t>(step == count ? lo : lo + step);
}

Point randomPointForSizeInRect(const Size& size, const Rect& rect) {
  const double x = randomDoubleBetween(rect.minX(), rect.maxX() - size.width);
  const double y = randomDoubleBetween(rect.minY(), rect.maxY() - size.height);
  return {x, y};
}

}  // namespace pelmora
