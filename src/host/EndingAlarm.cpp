#include "host/EndingAlarm.h"

#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace pelmora::host {

namespace {

constexpr std::string_view kLine = "Pelmora: Ended without waiting any longer\n";

void setAlarm(std::chrono::microseconds limit) {
  constexpr std::chrono::microseconds::rep kSecond = 1'000'000;
  const itimerval timer{{0, 0}, {limit.count() / kSecond, limit.count() % kSecond}};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

extern "C" void endNow(int) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine.data(), kLine.size());
  _exit(EXIT_SUCCESS);
}

}  // namespace

EndingAlarm::EndingAlarm(std::chrono::milliseconds limit) {
  std::signal(SIGALRM, endNow);
  setAlarm(limit);
}

EndingAlarm::~EndingAlarm() {
  setAlarm(std::chrono::microseconds(0));
  std::signal(SIGALRM, SIG_DFL);
}

}  // namespace pelmora::host
