#include "platform/linux/SystemClock.h"

#include <ctime>

namespace pelmora::platform {

ReferenceTime SystemClock::now() const {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return ReferenceTime::fromPosix(time.tv_sec, time.tv_nsec);
}

double SystemClock::mediaTime() const {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace pelmora::platform
