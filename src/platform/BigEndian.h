#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace pelmora::plist {

// Numbers of 1 to 8 bytes, high byte first, always moved as whole words: a million names are
// millions of such numbers, and a loop over their bytes takes several times as long.

[[nodiscard]] inline std::uint64_t highByteFirst(std::uint64_t word) {
  return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

/// The number in the first `width` bytes at `at`, where 8 must be readable.
[[nodiscard]] inline std::uint64_t readBigEndian(const std::uint8_t* at, unsigned width) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return highByteFirst(word) >> (64 - 8 * width);
}

/// Puts the number into the first `width` bytes at `at` and anything into the others of the 8
/// there.
inline void writeBigEndian(std::uint64_t value, unsigned width, std::uint8_t* at) {
  const std::uint64_t word = highByteFirst(value << (64 - 8 * width));
  std::memcpy(at, &word, sizeof word);
}

}  // namespace pelmora::plist
