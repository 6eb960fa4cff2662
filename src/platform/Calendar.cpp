#include "platform/Calendar.h"

#include <cmath>
#include <ctime>

namespace pelmora::platform {

int weekday(ReferenceTime moment) {
  const double seconds = std::floor(moment.posixSeconds());
  constexpr double kFarthest = 1e15;  // thirty million years: beyond, a date is nonsense
  if (!(std::fabs(seconds) < kFarthest)) return 1;
  // localtime_r looks at the time zone only once; the user may have travelled since.
  tzset();
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  return localtime_r(&time, &local) ? local.tm_wday + 1 : 1;
}

}  // namespace pelmora::platform
