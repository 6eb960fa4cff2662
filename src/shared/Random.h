#pragma once

#include "shared/Geometry.h"

#include <cstdint>

namespace pelmora {

// All randomness of the system is the C library's `random()`, seeded by `srandom`, drawn through
// these functions in a fixed order: a seed names every picture and place.

constexpr double kPi = 3.141592653589793;
constexpr double kRandomMax = 2147483647.0;    // largest result of random()
constexpr float kRandomRange = 2147483648.0F;  // number of its results

/// lo + (hi − lo) × random() ÷ 2147483647, in double precision; both ends are reachable.
[[nodiscard]] double randomDoubleBetween(double lo, double hi);

/// An integer in [lo, hi], computed in single precision: coarse for wide ranges, on purpose.
/// With hi < lo the range is walked downward from lo, both ends included.
[[nodiscard]] std::int32_t randomIntBetween(std::int32_t lo, std::int32_t hi);

/// The origin (lower left) at which a box of `size` lies inside `rect`; x is drawn before y. A box
/// larger than the rectangle reverses the range on that axis, which is used as it is.
[[nodiscard]] Point randomPointForSizeInRect(const Size& size, const Rect& rect);

[[nodiscard]] constexpr double DegreesToRadians(double degrees) { return degrees * kPi / 180; }
[[nodiscard]] constexpr double RadiansToDegrees(double radians) { return radians * 180 / kPi; }

}  // namespace pelmora
