#include "sandbox/TimeLimit.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace pelmora::sandbox {

namespace {

// Seconds beyond the limit.
constexpr int kCpuGrace = 2;
constexpr int kGrace = 3;

void limitCpu(rlim_t seconds) {
  rlimit limit{};
  if (getrlimit(RLIMIT_CPU, &limit) != 0) return;
  limit.rlim_cur = std::min(seconds, limit.rlim_max);
  setrlimit(RLIMIT_CPU, &limit);
}

}  // namespace

TimeLimit::TimeLimit(int seconds) {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  limitCpu(static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + seconds + kCpuGrace));
  alarm(static_cast<unsigned>(seconds + kGrace));
}

TimeLimit::~TimeLimit() {
  alarm(0);
  limitCpu(RLIM_INFINITY);
}

}  // namespace pelmora::sandbox
