#include "OwnProcess.h"

#include <malloc.h>
#include <sys/resource.h>

#include <fstream>
#include <string>

namespace pelmora::bench {

namespace {

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

}  // namespace

double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with("VmHWM:")) return std::strtod(line.c_str() + 6, nullptr) / 1e3;
  }
  return 0;
}

void forgetPeak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << '5';
}

double processorSecondsOfAll() {
  double seconds = 0;
  for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    getrusage(who, &usage);
    seconds += secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
  }
  return seconds;
}

}  // namespace pelmora::bench
