#pragma once

#include <compare>

namespace pelmora {

/// A moment of wall time: double seconds since 2001-01-01T00:00:00Z. Stored folder dates and file
/// dates are both made by the same conversion, so equality of the doubles is equality of the dates.
struct ReferenceTime {
  double seconds = 0;
  auto operator<=>(const ReferenceTime&) const = default;

  /// Earlier than every date that a file or a clock gives.
  [[nodiscard]] static constexpr ReferenceTime distantPast() { return {-63114076800.0}; }

  /// From POSIX time (seconds and nanoseconds since 1970-01-01T00:00:00Z).
  [[nodiscard]] static constexpr ReferenceTime fromPosix(long long seconds, long nanoseconds) {
    // Subtracted as doubles: a damaged file system may tell any number of seconds.
    return {static_cast<double>(seconds) - static_cast<double>(kPosixSecondsAtReference) +
            static_cast<double>(nanoseconds) * 1e-9};
  }

  /// Seconds since 1970-01-01T00:00:00Z.
  [[nodiscard]] constexpr double posixSeconds() const {
    return seconds + static_cast<double>(kPosixSecondsAtReference);
  }

  static constexpr long long kPosixSecondsAtReference = 978307200;
};

}  // namespace pelmora
