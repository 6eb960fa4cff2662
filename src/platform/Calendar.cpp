#include "platform/Calendar.h"

#include <cmath>
#include <ctime>
#include <optional>

namespace pelmora::platform {

namespace {

constexpr std::time_t kDay = 24 * 3600;
constexpr std::time_t kLongestDay = 27 * 3600;  // clocks are put back by an hour or two

/// The moment's whole seconds, unless it is nonsense.
std::optional<std::time_t> posixTime(ReferenceTime moment) {
  const double seconds = std::floor(moment.posixSeconds());
  constexpr double kFarthest = 1e15;  // thirty million years: beyond, a date is nonsense
  if (!(std::fabs(seconds) < kFarthest)) return std::nullopt;
  return static_cast<std::time_t>(seconds);
}

std::optional<std::tm> localTime(std::time_t time) {
  std::tm local{};
  return localtime_r(&time, &local) ? std::optional(local) : std::nullopt;
}

/// Whether `time` lies on a later day than `day`.
bool isLater(std::time_t time, const std::tm& day) {
  const std::optional<std::tm> local = localTime(time);
  if (!local) return true;
  return local->tm_year != day.tm_year ? local->tm_year > day.tm_year
                                       : local->tm_yday > day.tm_yday;
}

}  // namespace

int weekday(ReferenceTime moment) {
  // localtime_r looks at the time zone only once; the user may have travelled since.
  tzset();
  const std::optional<std::time_t> time = posixTime(moment);
  const std::optional<std::tm> local = time ? localTime(*time) : std::nullopt;
  return local ? local->tm_wday + 1 : 1;
}

ReferenceTime beginOfNextDay(ReferenceTime moment) {
  tzset();
  const std::optional<std::time_t> time = posixTime(moment);
  const std::optional<std::tm> today = time ? localTime(*time) : std::nullopt;
  if (!today) return {moment.seconds + static_cast<double>(kDay)};
  // Halved down to the second at which the date changes: it asks nothing about how clocks are put
  // forward or back, which mktime answers differently at a midnight that is skipped or comes twice.
  std::time_t same = *time;
  std::time_t later = *time + kLongestDay;
  while (later - same > 1) {
    const std::time_t middle = same + (later - same) / 2;
    (isLater(middle, *today) ? later : same) = middle;
  }
  return ReferenceTime::fromPosix(later, 0);
}

}  // namespace pelmora::platform
