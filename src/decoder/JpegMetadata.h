#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace pelmora::decoder {

/// Collects from the segments of a JPEG's header what says how to show it.
/// Memory: one EXIF segment and `kLargestProfile`, however many segments the file has.
class JpegMetadata {
 public:
  static constexpr std::size_t kLargestProfile = 4'000'000;

  /// The contents of an APP1 segment, without marker and length; the first with EXIF counts.
  void takeApp1(std::span<const std::uint8_t> segment);
  /// The contents of an APP2 segment, each with a piece of the profile, in any order.
  void takeApp2(std::span<const std::uint8_t> segment);

  [[nodiscard]] int orientation() const;
  /// Whole; empty where a piece is missing, doubled or does not belong, or where it is too large.
  [[nodiscard]] std::string profile() const;

 private:
  std::string _exif;
  std::array<std::string, 256> _pieces;  // of the profile; 0 is not used
  std::size_t _profileBytes = 0;
  int _pieceCount = 0;
  bool _isProfileBroken = false;
};

}  // namespace pelmora::decoder
