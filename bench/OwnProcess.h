#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace pelmora::bench {

/// The most memory that this process had resident since it began, or forgot, in megabytes.
[[nodiscard]] double peakMegabytes();
/// Forgets the peak so far, and gives back what the heap keeps of memory that is free.
void forgetPeak();

/// Processor time of this process and of those that it started and that have ended, in seconds.
[[nodiscard]] double processorSecondsOfAll();

/// Does something in a child process, so that nothing else counts, and gives its answer.
template <typename Work>
auto inChild(const Work& work) {
  using Answer = decltype(work());
  static_assert(std::is_trivially_copyable_v<Answer>);
  Answer answer{};
  int channel[2];
  std::fflush(stdout);
  if (pipe(channel) != 0) std::exit(1);
  const pid_t child = fork();
  if (child == 0) {
    answer = work();
    _exit(write(channel[1], &answer, sizeof answer) == sizeof answer ? 0 : 1);
  }
  close(channel[1]);
  const bool isTold = read(channel[0], &answer, sizeof answer) == sizeof answer;
  close(channel[0]);
  waitpid(child, nullptr, 0);
  if (isTold) return answer;
  std::fputs("a benchmark's process failed\n", stderr);
  std::exit(1);
}

}  // namespace pelmora::bench
