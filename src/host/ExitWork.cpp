#include "host/ExitWork.h"

#include <unistd.h>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace pelmora::host {

namespace {

constexpr unsigned kLongest = 5;  // seconds

/// exit() destroys what belongs to the calling thread before anything that is the process's: unlike
/// a function given to atexit(), the work finds everything alive that was made after it was asked
/// for.
struct AtExit {
  std::function<void()> work;

  ~AtExit() {
    if (!work) return;
    alarm(kLongest);  // ends the process
    std::exchange(work, nullptr)();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
  }
};

thread_local AtExit atExit;

}  // namespace

ExitWork::ExitWork(std::function<void()> work) {
  assert(!atExit.work && "one at a time");
  atExit.work = std::move(work);
}

ExitWork::~ExitWork() { atExit.work = nullptr; }

}  // namespace pelmora::host
