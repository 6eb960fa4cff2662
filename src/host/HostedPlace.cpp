#include "host/HostedPlace.h"

#include <algorithm>
#include <cstdint>

namespace pelmora::host {

namespace {

std::int64_t overlap(int begin, int length, int otherBegin, int otherLength) {
  const std::int64_t first = std::max<std::int64_t>(begin, otherBegin);
  const std::int64_t end =
      std::min(std::int64_t{begin} + length, std::int64_t{otherBegin} + otherLength);
  return std::max<std::int64_t>(0, end - first);
}

std::int64_t commonArea(const PixelRect& a, const PixelRect& b) {
  return overlap(a.x, a.width, b.x, b.width) * overlap(a.y, a.height, b.y, b.height);
}

std::int64_t areaOf(const PixelRect& rect) { return std::int64_t{rect.width} * rect.height; }

}  // namespace

std::optional<HostedPlace> placeOf(const PixelRect& window,
                                   const std::vector<PixelRect>& displays) {
  if (displays.empty()) return std::nullopt;
  const auto most = std::max_element(displays.begin(), displays.end(),
                                     [&window](const PixelRect& a, const PixelRect& b) {
                                       return commonArea(window, a) < commonArea(window, b);
                                     });
  // By the window's own size: one that is still on its way to its place is no preview for that.
  return HostedPlace{.display = static_cast<std::size_t>(most - displays.begin()),
                     .isPreview = 2 * areaOf(window) < areaOf(*most)};
}

}  // namespace pelmora::host
