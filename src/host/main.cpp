#include "desktop/SessionBus.h"
#include "host/Command.h"
#include "host/DescriptorLimit.h"
#include "host/MemoryShortage.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <span>
#include <stdexcept>

namespace {

// Left to itself, the allocator keeps for ever what large blocks once took: pictures, and whatever
// others send. A saver runs for weeks, and large blocks are rare enough in it to go back at once.
constexpr int kLargeBlock = 256 << 10;  // bytes

/// Where the system has no thread left for it, say, it ends with a line and not by a signal.
int run(std::span<char*> words) {
  try {
    const pelmora::Status descriptors = pelmora::host::ensureDescriptors();
    if (!descriptors) throw std::runtime_error(descriptors.error().message);
    return static_cast<int>(pelmora::host::runProgram(words));
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "pelmora: it cannot run: %s\n", problem.what());
    return EXIT_FAILURE;
  }
}

}  // namespace

int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  mallopt(M_TRIM_THRESHOLD, 4 * kLargeBlock);
  pelmora::host::endWhenMemoryRunsOut();
  pelmora::desktop::neverStartSessionBus();
  const int status = run({argv, static_cast<std::size_t>(argc)});
  if (pelmora::desktop::SessionBus::isAnyLeftToItself()) {
    std::fflush(nullptr);
    std::_Exit(status);
  }
  return status;
}
