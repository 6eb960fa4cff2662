#pragma once

#include <cstdint>

namespace pelmora::sources {

/// An integer in [lo, hi] from one draw of `random()`, computed in single precision: coarse above
/// 2^24 numbers, and then able to lie a little beyond `hi`, on purpose. The empty range hi = lo − 1
/// draws too, and gives lo.
[[nodiscard]] std::uint64_t randomIndexBetween(std::uint64_t lo, std::uint64_t hi);

}  // namespace pelmora::sources
