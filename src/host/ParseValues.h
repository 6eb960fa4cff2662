#pragma once

#include "shared/Geometry.h"
#include "shared/ReferenceTime.h"
#include "shared/Result.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace pelmora::host {

// Values on a command line. Each takes the whole text or none of it; errors say what was expected.

/// The largest side of a display that is believed, in points.
inline constexpr int kLargestSide = 32768;

[[nodiscard]] Result<double> parseNumber(std::string_view text);
[[nodiscard]] Result<std::int64_t> parseInteger(std::string_view text);
/// "1920x1080".
[[nodiscard]] Result<Size> parseSize(std::string_view text);
/// "1920x1080+0+0", in the window system's coordinates: origin upper left, y downward. Offsets may
/// be negative ("+-100+0" or "-100+0").
[[nodiscard]] Result<Rect> parseGeometry(std::string_view text);
/// A comma-separated list of geometries, at most 64.
[[nodiscard]] Result<std::vector<Rect>> parseGeometries(std::string_view text);
/// "2026-11-21T12:00:00", local wall time.
[[nodiscard]] Result<ReferenceTime> parseLocalTime(std::string_view text);

}  // namespace pelmora::host
